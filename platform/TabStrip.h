#pragma once

#include <QFontMetrics>
#include <QHash>
#include <QTabBar>

class QPainter;

/// Tabs that look like a notebook's dividers, each known by a key.
///
/// The key is the tab's data. chosen() comes after a tab was selected, by the
/// learner or from code, also when it was the selected one before.
class TabStrip : public QTabBar
{
    Q_OBJECT

public:
    explicit TabStrip(QWidget *parent = nullptr);

    /// Adds a tab at the end, and says nothing. Does not select it, but for the first: a strip with tabs has one
    /// selected. "&" in a caption is a letter like any other.
    void addKeyedTab(const QString &key, const QString &caption);
    void setKeyedCaption(int position, const QString &caption);
    [[nodiscard]] QString keyedCaption(int position) const; ///< "" if there is no such tab
    void removeAllTabs();                                   ///< says nothing
    /// Selects the tab and says so. Outside 0 to count() - 1: nothing.
    void select(int position);

    [[nodiscard]] QString selectedKey() const;              ///< "" without a selected tab
    [[nodiscard]] int positionOf(const QString &key) const; ///< -1 if there is none

Q_SIGNALS:
    void chosen();

protected:
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    [[nodiscard]] QSize tabSizeHint(int position) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int position) const override;

private:
    void paintTab(QPainter &painter, int position) const;
    [[nodiscard]] QFontMetrics boldMetrics() const;

    // The strip asks for the size of every tab whenever one is added.
    QFontMetrics m_bold;
    mutable QHash<QString, int> m_boldWidths; ///< of captions, in m_bold

    bool m_quiet = false; ///< while tabs are added and removed
};
