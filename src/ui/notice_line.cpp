#include "ui/notice_line.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "ui/text_codec.h"

namespace kestrel {

NoticeLine::NoticeLine(Kind kind, QWidget* parent) : QFrame(parent), text_(new QLabel(this)) {
    setObjectName(QStringLiteral("notice"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, colours.color(QPalette::ToolTipBase));
    colours.setColor(QPalette::WindowText, colours.color(QPalette::ToolTipText));
    setPalette(colours);
    text_->setObjectName(QStringLiteral("noticeText"));
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 2, 6, 2);
    row->addWidget(text_, 1);
    if (kind == Kind::WithButtons) {
        restore_ = button("restore", "&Restore", "Bring back the spectrum before (Alt+R)");
        connect(restore_, &QPushButton::clicked, this, &NoticeLine::restoreAsked);
        QPushButton* close = button("closeNotice", "&Dismiss", "Close this line (Alt+D)");
        connect(close, &QPushButton::clicked, this, &NoticeLine::closeAsked);
        row->addWidget(restore_);
        row->addWidget(close);
    }
    hide();
}

QPushButton* NoticeLine::button(const char* name, const char* caption, const char* tip) {
    auto* made = new QPushButton(QString::fromLatin1(caption), this);
    made->setObjectName(QString::fromLatin1(name));
    made->setToolTip(QString::fromLatin1(tip));
    // A click leaves the keys where they were.
    made->setFocusPolicy(Qt::TabFocus);
    return made;
}

void NoticeLine::say(const std::string& text, bool canRestore) {
    const QString said = toSigns(text);
    const bool isNew = !said.isEmpty() && said != text_->text();
    text_->setText(said);
    if (restore_ != nullptr)
        restore_->setVisible(canRestore);
    setVisible(!said.isEmpty());
    if (!isNew)
        return;
    setAccessibleName(said);
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

}  // namespace kestrel
