// A window to read in: a text of headings, tables and links, and a field that finds words in it. It
// shows what is inside the program only.
#pragma once

#include <QLineEdit>
#include <QTextBrowser>
#include <QWidget>

namespace kestrel {

// The resources below this folder: texts in Markdown and their pictures.
inline constexpr const char* guideFolder = "qrc:/guide/";

class GuideBrowser : public QTextBrowser {
    Q_OBJECT

  public:
    explicit GuideBrowser(QWidget* parent);

    // The heading whose words, joined by hyphens, are the fragment of a link.
    void goToHeading(const QString& fragment);

    QVariant loadResource(int type, const QUrl& name) override;

  private:
    void follow(const QUrl& link);
};

class ReadingWindow : public QWidget {
    Q_OBJECT

  public:
    ReadingWindow(const QString& title, QWidget* parent);

    // A text of guideFolder, with the links between its texts.
    void showResource(const QString& name);
    void showMarkdown(const QString& text);

    GuideBrowser* const page;
    QLineEdit* const findField;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    // The next place of what stands in the field, from the top again after the last.
    void findNext(QTextDocument::FindFlags direction);
};

}  // namespace kestrel
