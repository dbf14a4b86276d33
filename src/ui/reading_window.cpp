#include "ui/reading_window.h"

#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QShortcut>
#include <QTextBlock>
#include <QVBoxLayout>

#include "ui/find_row.h"

namespace kestrel {
namespace {

constexpr int widestPicture = 760;  // pixels

// "Look at it" as links call it: "look-at-it".
QString fragmentOf(const QString& heading) {
    QString fragment;
    for (const QChar sign : heading.toLower()) {
        if (sign.isLetterOrNumber() || sign == QLatin1Char('-'))
            fragment += sign;
        else if (sign.isSpace())
            fragment += QLatin1Char('-');
    }
    return fragment;
}

bool isInside(const QUrl& url) {
    return url.toString(QUrl::RemoveFragment).startsWith(QLatin1String(guideFolder)) &&
           QFile::exists(QLatin1Char(':') + url.path());
}

}  // namespace

GuideBrowser::GuideBrowser(QWidget* parent) : QTextBrowser(parent) {
    setOpenLinks(false);
    setObjectName(QStringLiteral("page"));
    connect(this, &QTextBrowser::anchorClicked, this, &GuideBrowser::follow);
    connect(this, &QTextBrowser::sourceChanged, this,
            [this](const QUrl& url) { goToHeading(url.fragment()); });
}

void GuideBrowser::follow(const QUrl& link) {
    const QUrl target = source().resolved(link);
    if (isInside(target))
        setSource(target, QTextDocument::MarkdownResource);
}

void GuideBrowser::goToHeading(const QString& fragment) {
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0 || fragmentOf(block.text()) != fragment)
            continue;
        moveCursor(QTextCursor::End);  // so that the heading comes to the top
        setTextCursor(QTextCursor(block));
        return;
    }
}

// Nothing from outside the program. A wide picture is shown smaller.
QVariant GuideBrowser::loadResource(int type, const QUrl& name) {
    const QUrl url = QUrl(QLatin1String(guideFolder)).resolved(name);
    if (!isInside(url))
        return {};
    if (type != QTextDocument::ImageResource)
        return QTextBrowser::loadResource(type, url);
    const QImage image(QLatin1Char(':') + url.path());
    return image.width() <= widestPicture
               ? image
               : image.scaledToWidth(widestPicture, Qt::SmoothTransformation);
}

ReadingWindow::ReadingWindow(const QString& title, QWidget* parent)
    : QWidget(parent, Qt::Window), page(new GuideBrowser(this)), findField(new QLineEdit(this)) {
    setWindowTitle(title);
    page->setAccessibleName(title);
    auto* column = new QVBoxLayout(this);
    column->addWidget(page);
    column->addLayout(
        findRow(*findField, "&Find:", "Find words in the text (Ctrl+F, then Enter or F3)"));
    connect(findField, &QLineEdit::returnPressed, this, [this] { findNext({}); });
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, findField,
            [this] { findField->setFocus(); });
    resize(860, 640);
    page->setFocus();
}

void ReadingWindow::showResource(const QString& name) {
    page->setSource(QUrl(QLatin1String(guideFolder) + name), QTextDocument::MarkdownResource);
}

void ReadingWindow::showMarkdown(const QString& text) {
    page->setMarkdown(text);
}

void ReadingWindow::findNext(QTextDocument::FindFlags direction) {
    if (findField->text().isEmpty() || page->find(findField->text(), direction))
        return;
    const QTextCursor before = page->textCursor();
    page->moveCursor(direction == QTextDocument::FindBackward ? QTextCursor::End
                                                              : QTextCursor::Start);
    if (!page->find(findField->text(), direction))
        page->setTextCursor(before);
}

void ReadingWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else if (event->matches(QKeySequence::FindPrevious))
        findNext(QTextDocument::FindBackward);
    else if (event->matches(QKeySequence::FindNext))
        findNext({});
    else
        QWidget::keyPressEvent(event);
}

}  // namespace kestrel
