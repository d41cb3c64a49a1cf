#pragma once

#include <QWidget>

/// Has the focus where a text is read that takes none itself, so that no caret stands in it and
/// the keys reach the window. Assistive technology is told there what is to be read.
///
/// Invisible; lies behind what it is the place of.
class ReadingPlace : public QWidget
{
    Q_OBJECT

public:
    explicit ReadingPlace(QWidget *parent = nullptr);

    /// Tells assistive technology that this is to be read now, unless it was told just that.
    void tell(const QString &text);
};
