#include "platform/InsertObjectDialog.h"

#include "platform/FileObject.h"
#include "platform/FocusRing.h"
#include "platform/PastedPicture.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QDialog>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QStyle>
#include <QUrl>

#include <utility>

namespace {

constexpr auto dialogTitle = QLatin1String("Insert Object");

constexpr auto withPicture = QLatin1String("Picture from Clipboard");
constexpr auto withoutPicture = QLatin1String("Picture from Clipboard (the clipboard holds no picture)");

/// Rows of the list of types.
enum Type { PictureFromFile, PictureFromClipboard };

/// Where the object comes from.
enum class Origin { AnyFile, PictureFile, Clipboard };

/// What would be inserted.
struct Offer
{
    enum class State { Nothing, Refused, Ready };

    State state = State::Nothing;
    QString text; ///< what it is, or what is missing or wrong
    bool isPicture = false;
    QByteArray source; ///< RtfObject.h; empty as long as it was only looked at
};

Offer nothing(const QString &text)
{
    return {Offer::State::Nothing, text, false, {}};
}

Offer refused(const QString &text)
{
    return {Offer::State::Refused, text, false, {}};
}

QString dimensions(QSize pixels)
{
    return QStringLiteral("%1 x %2 pixels").arg(pixels.width()).arg(pixels.height());
}

QString descriptionOf(const FileObject &file)
{
    const QString size = humanSize(file.size);
    if (!file.isPicture) {
        return QStringLiteral("File \"%1\", %2").arg(shownFileName(file.name), size);
    }
    return file.pixels.isEmpty() ? QStringLiteral("Picture, %1").arg(size)
                                 : QStringLiteral("Picture, %1, %2").arg(dimensions(file.pixels), size);
}

Offer offerOf(const FileObject &file, Origin origin)
{
    if (!file.refusal.isEmpty()) {
        return refused(file.refusal);
    }
    if (origin == Origin::PictureFile && !file.isPicture) {
        return refused(QStringLiteral("\"%1\" cannot be shown as a picture. \"Create from File\" can insert it.")
                           .arg(shownFileName(file.name)));
    }
    return {Offer::State::Ready, descriptionOf(file), file.isPicture, file.source};
}

bool clipboardHasPicture()
{
    const QMimeData *contents = QGuiApplication::clipboard()->mimeData();
    return contents != nullptr && contents->hasImage();
}

Offer offerOf(const QImage &picture)
{
    if (picture.isNull()) {
        return refused(clipboardHasPicture() ? QStringLiteral("The picture on the clipboard cannot be read.")
                                             : QStringLiteral("The clipboard holds no picture. Copy one first."));
    }
    return {Offer::State::Ready, QStringLiteral("Picture, %1").arg(dimensions(picture.size())), true, {}};
}

/// Where the learner's files are.
QString homeFolder()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

QString absolute(const QString &path)
{
    const bool isAtHome = path == QStringLiteral("~") || path.startsWith(QStringLiteral("~/"));
    return isAtHome ? QDir::homePath() + path.mid(1) : QDir(homeFolder()).absoluteFilePath(path);
}

/// The file that \p typed means: a path as people write it, or an address as file managers hand it over.
QString pathOf(const QString &typed)
{
    const QString trimmed = typed.trimmed();
    if (trimmed.startsWith(QStringLiteral("file://"))) {
        return QUrl(trimmed).toLocalFile();
    }
    return QDir::cleanPath(absolute(QFileInfo::exists(absolute(typed)) ? typed : trimmed));
}

QStringList filtersFor(Origin origin)
{
    const QString all = QStringLiteral("All files (*)");
    if (origin != Origin::PictureFile) {
        return {all};
    }
    QStringList patterns;
    const QStringList endings = pictureEndings();
    for (const QString &ending : endings) {
        // Some desktops' dialogs tell capitals from small letters.
        patterns << QStringLiteral("*.") + ending << QStringLiteral("*.") + ending.toUpper();
    }
    return {QStringLiteral("Pictures (%1)").arg(patterns.join(QLatin1Char(' '))), all};
}

class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(WaitCursor)
};

template <class Control>
Control *named(Control *control, const char *name)
{
    control->setObjectName(QString::fromLatin1(name));
    return control;
}

class InsertObjectDialog final : public QDialog
{
public:
    InsertObjectDialog(QWidget *parent, QSize pictureLimit);

    /// Of what was chosen, once the dialog is accepted.
    [[nodiscard]] QByteArray source() const { return m_offer.source; }

protected:
    void changeEvent(QEvent *event) override;

private:
    void layOut();
    QWidget *makeTypesPage();
    QWidget *makeFilePage();
    QGroupBox *makeResult();
    void connectControls();

    [[nodiscard]] Origin origin() const;
    void showOrigin();
    void showClipboardEntry();
    void refresh();
    [[nodiscard]] Offer readOffer() const;
    void display(const Offer &offer);
    void browse();
    void insert();

    QRadioButton *m_createNew;
    QRadioButton *m_createFromFile;
    QListWidget *m_types;    ///< what can be made anew
    QLabel *m_hint;          ///< what becomes of a file
    QStackedWidget *m_pages; ///< m_types or m_hint
    QLabel *m_fileLabel;
    QLineEdit *m_path; ///< the path of the file or of the picture file
    QPushButton *m_browse;
    QLabel *m_sign;   ///< a sign before m_result if that is a refusal
    QLabel *m_result; ///< what OK inserts, or why nothing can be inserted
    QPushButton *m_ok;
    QPushButton *m_cancel;

    const QSize m_pictureLimit;
    Offer m_offer; ///< the one that is shown
};

InsertObjectDialog::InsertObjectDialog(QWidget *parent, QSize pictureLimit)
    : QDialog(parent)
    , m_createNew(named(new QRadioButton(QStringLiteral("Create &New"), this), "optCreateNew"))
    , m_createFromFile(named(new QRadioButton(QStringLiteral("Create from &File"), this), "optCreateFromFile"))
    , m_types(named(new QListWidget(this), "lstTypes"))
    , m_hint(named(new QLabel(this), "lblHint"))
    , m_pages(new QStackedWidget(this))
    , m_fileLabel(named(new QLabel(QStringLiteral("Fi&le:"), this), "lblFile"))
    , m_path(named(new QLineEdit(this), "txtFile"))
    , m_browse(named(new QPushButton(QStringLiteral("&Browse..."), this), "cmdBrowse"))
    , m_sign(named(new QLabel(this), "imgResult"))
    , m_result(named(new QLabel(this), "lblResult"))
    , m_ok(named(new QPushButton(QStringLiteral("OK"), this), "cmdOK"))
    , m_cancel(named(new QPushButton(QStringLiteral("Cancel"), this), "cmdCancel"))
    , m_pictureLimit(pictureLimit)
{
    setObjectName(QStringLiteral("OLE1"));
    setWindowTitle(dialogTitle);
    new FocusRing(*this);

    m_types->addItem(QStringLiteral("Picture from File..."));
    m_types->addItem(QString());
    m_types->setCurrentRow(PictureFromFile);
    m_createNew->setChecked(true);
    m_fileLabel->setBuddy(m_path);
    m_ok->setDefault(true);

    layOut();
    connectControls();
    showClipboardEntry();
    showOrigin();
    m_types->setFocus();
}

// Looks.

QWidget *InsertObjectDialog::makeTypesPage()
{
    auto *label = new QLabel(QStringLiteral("&Type:"));
    label->setBuddy(m_types);
    m_types->setAccessibleName(QStringLiteral("Type"));
    m_types->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_types->item(PictureFromClipboard)->setText(withoutPicture); // the widest that it will be
    m_types->setMinimumWidth(m_types->sizeHintForColumn(0) + 2 * m_types->frameWidth());

    auto *page = new QWidget;
    auto *rows = new QVBoxLayout(page);
    rows->setContentsMargins({});
    rows->addWidget(label);
    rows->addWidget(m_types, 1);
    return page;
}

QWidget *InsertObjectDialog::makeFilePage()
{
    m_hint->setText(QStringLiteral("A picture is shown in the text. Any other file stands there as an icon with "
                                   "its name: double-click it to open the file.\n\nThe text holds a copy of the "
                                   "file, which later changes of the file do not reach."));
    m_hint->setWordWrap(true);
    m_hint->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    return m_hint;
}

QGroupBox *InsertObjectDialog::makeResult()
{
    const int sign = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_sign->setFixedSize(sign, sign);
    QSizePolicy policy = m_sign->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_sign->setSizePolicy(policy);
    m_result->setWordWrap(true);
    m_result->setTextFormat(Qt::PlainText);
    m_result->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    // Nothing moves when one sentence takes another's place.
    constexpr int lines = 3;
    const QFontMetrics metrics = m_result->fontMetrics();
    const QString widestName(42, QLatin1Char('m'));
    m_result->setMinimumSize(metrics.horizontalAdvance(widestName), metrics.lineSpacing() * lines);

    auto *result = new QGroupBox(QStringLiteral("Result"));
    auto *row = new QHBoxLayout(result);
    row->addWidget(m_sign, 0, Qt::AlignTop);
    row->addWidget(m_result, 1);
    return result;
}

void InsertObjectDialog::layOut()
{
    m_pages->addWidget(makeTypesPage());
    m_pages->addWidget(makeFilePage());
    constexpr int lines = 6; // of the hint
    m_pages->setFixedHeight(fontMetrics().lineSpacing() * lines);

    auto *grid = new QGridLayout;
    grid->addWidget(m_createNew, 0, 0);
    grid->addWidget(m_createFromFile, 1, 0);
    grid->setRowStretch(2, 1);
    grid->addWidget(m_pages, 0, 1, 3, 1);
    grid->setColumnStretch(1, 1);
    constexpr int betweenPanels = 18;
    grid->setHorizontalSpacing(betweenPanels);

    auto *fileRow = new QHBoxLayout;
    fileRow->addWidget(m_fileLabel);
    fileRow->addWidget(m_path, 1);
    fileRow->addWidget(m_browse);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);

    auto *rows = new QVBoxLayout(this);
    rows->addLayout(grid);
    rows->addLayout(fileRow);
    rows->addWidget(makeResult(), 1);
    rows->addLayout(buttons);

    QWidget *last = m_createNew;
    for (QWidget *next :
         {static_cast<QWidget *>(m_createFromFile), static_cast<QWidget *>(m_types), static_cast<QWidget *>(m_path),
          static_cast<QWidget *>(m_browse), static_cast<QWidget *>(m_ok), static_cast<QWidget *>(m_cancel)}) {
        setTabOrder(std::exchange(last, next), next);
    }
}

void InsertObjectDialog::connectControls()
{
    // Alt with the letter of a button presses it, and releases it only after a while: what is typed meanwhile
    // belongs to the panel. The arrow keys take the focus back to the button.
    connect(m_createNew, &QRadioButton::pressed, this, [this] {
        m_createNew->setChecked(true);
        m_types->setFocus();
    });
    connect(m_createFromFile, &QRadioButton::pressed, this, [this] {
        m_createFromFile->setChecked(true);
        m_path->setFocus();
    });
    connect(m_createNew, &QRadioButton::toggled, this, &InsertObjectDialog::showOrigin);
    connect(m_types, &QListWidget::currentRowChanged, this, &InsertObjectDialog::showOrigin);
    connect(m_types, &QListWidget::itemDoubleClicked, this, [this] {
        if (origin() == Origin::PictureFile) {
            browse();
        } else {
            m_ok->click();
        }
    });
    connect(m_path, &QLineEdit::textChanged, this, &InsertObjectDialog::refresh);
    connect(m_browse, &QPushButton::clicked, this, &InsertObjectDialog::browse);
    connect(m_ok, &QPushButton::clicked, this, &InsertObjectDialog::insert);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        showClipboardEntry();
        if (origin() == Origin::Clipboard) {
            refresh();
        }
    });
}

// What is chosen.

Origin InsertObjectDialog::origin() const
{
    if (m_createFromFile->isChecked()) {
        return Origin::AnyFile;
    }
    return m_types->currentRow() == PictureFromClipboard ? Origin::Clipboard : Origin::PictureFile;
}

void InsertObjectDialog::showOrigin()
{
    m_pages->setCurrentIndex(origin() == Origin::AnyFile ? 1 : 0);
    for (QWidget *control :
         {static_cast<QWidget *>(m_fileLabel), static_cast<QWidget *>(m_path), static_cast<QWidget *>(m_browse)}) {
        control->setEnabled(origin() != Origin::Clipboard);
    }
    refresh();
}

void InsertObjectDialog::showClipboardEntry()
{
    const bool hasPicture = clipboardHasPicture();
    QListWidgetItem *entry = m_types->item(PictureFromClipboard);
    entry->setText(hasPicture ? withPicture : withoutPicture);
    entry->setFlags(hasPicture ? Qt::ItemIsSelectable | Qt::ItemIsEnabled : Qt::NoItemFlags);
}

void InsertObjectDialog::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    // The learner may come back from a program that made the file what it should be.
    // After OK the dialog is hidden, and what was chosen stands.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && isVisible()) {
        refresh();
    }
}

/// Looks at what is chosen.
void InsertObjectDialog::refresh()
{
    const Origin from = origin();
    if (from == Origin::Clipboard) {
        display(offerOf(QGuiApplication::clipboard()->image()));
    } else if (!m_path->text().trimmed().isEmpty()) {
        display(offerOf(lookAtFile(pathOf(m_path->text())), from));
    } else {
        const QString what = from == Origin::PictureFile ? QStringLiteral("picture") : QStringLiteral("file");
        display(nothing(QStringLiteral("Type the path of a %1, or press \"Browse...\" to choose one.").arg(what)));
    }
}

void InsertObjectDialog::display(const Offer &offer)
{
    m_offer = offer;
    QPixmap sign;
    if (offer.state == Offer::State::Refused) {
        sign = style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(m_sign->size());
    }
    m_sign->setPixmap(sign);
    m_sign->setVisible(!sign.isNull());
    m_result->setText(offer.text);
    m_ok->setEnabled(offer.state == Offer::State::Ready);
}

void InsertObjectDialog::browse()
{
    const QString typed = m_path->text().trimmed();
    const QFileInfo shown(typed.isEmpty() ? homeFolder() : pathOf(typed));
    const QString folder = shown.isDir() ? shown.filePath() : shown.absolutePath();
    const QString title =
        origin() == Origin::PictureFile ? QStringLiteral("Choose Picture") : QStringLiteral("Choose File");
    QFileDialog dialog(this, title, QFileInfo(folder).isDir() ? folder : homeFolder());
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    dialog.setNameFilters(filtersFor(origin()));
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (shown.isFile()) {
        dialog.selectFile(shown.filePath());
    }
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        m_path->setText(dialog.selectedFiles().constFirst());
        m_path->setFocus(); // on the button Enter would browse again
    }
}

/// What is chosen, with its source.
Offer InsertObjectDialog::readOffer() const
{
    const WaitCursor waiting;
    if (origin() != Origin::Clipboard) {
        return offerOf(objectOfFile(pathOf(m_path->text()), m_pictureLimit), origin());
    }
    const QImage picture = QGuiApplication::clipboard()->image();
    Offer offer = offerOf(picture);
    offer.source = sourceOfImage(picture, m_pictureLimit);
    return offer;
}

/// Reads what is chosen, which may have changed since it was looked at, and closes the dialog if it is still as shown.
void InsertObjectDialog::insert()
{
    const bool wasPicture = m_offer.isPicture;
    const Offer offer = readOffer();
    display(offer);
    if (offer.state != Offer::State::Ready) {
        return;
    }
    if (offer.isPicture == wasPicture) {
        accept();
    } else {
        m_result->setText(
            QStringLiteral("%1. It is not what it looked like at first: press OK to insert it all the same.")
                .arg(offer.text));
    }
}

} // namespace

std::optional<QByteArray> askObject(QWidget *parent, QSize pictureLimit)
{
    InsertObjectDialog dialog(parent, pictureLimit);
    return dialog.exec() == QDialog::Accepted ? std::optional(dialog.source()) : std::nullopt;
}
