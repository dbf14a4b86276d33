// The controls of the peak-area window: where they stand, their order, and what they call.

#include <iterator>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QShortcut>
#include <QVBoxLayout>
#include <QValidator>

#include "analysis/form7_peak_area.h"
#include "ui/modal_form.h"
#include "ui/number_field.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

// Ends the typing where the bytes of a remark are full: a kanji takes two or three of them.
class RemarkLimit : public QValidator {
  public:
    using QValidator::QValidator;

    State validate(QString& text, int& cursor) const override {
        const auto full = [&text] { return fromWindow(text).size() > PeakAreaSet::nameBytes; };
        while (cursor > 0 && full())
            removeBefore(text, cursor);
        return full() ? Invalid : Acceptable;
    }

  private:
    // A whole character, also where it is a pair of surrogates.
    static void removeBefore(QString& text, int& cursor) {
        const bool pair = cursor > 1 && text[cursor - 1].isLowSurrogate();
        cursor -= pair ? 2 : 1;
        text.remove(cursor, pair ? 2 : 1);
    }
};

}  // namespace

QLineEdit* Form7::result(const char* name, int columns, const char* accessible) {
    QLineEdit* field = fixedPitchField(this, name, columns, accessible);
    field->setReadOnly(true);
    field->setFocusPolicy(Qt::ClickFocus);
    QPalette colours = field->palette();
    colours.setColor(QPalette::Base, colours.color(QPalette::Window));
    field->setPalette(colours);
    return field;
}

QPushButton* Form7::button(const char* name, const char* caption, const char* accessible) {
    auto* made = new QPushButton(QString::fromLatin1(caption), this);
    made->setObjectName(QString::fromLatin1(name));
    made->setAccessibleName(QString::fromLatin1(accessible));
    return made;
}

QLabel* Form7::label(const char* text) {
    return new QLabel(QString::fromLatin1(text), this);
}

void Form7::placeControls() {
    auto* menu = new QMenuBar(this);
    QAction* output = menu->addAction(QStringLiteral("&Output"), this, &Form7::showOutput);
    output->setObjectName(QStringLiteral("o1"));
    auto* column = new QVBoxLayout(this);
    column->setMenuBar(menu);
    column->addLayout(regionControls());
    column->addLayout(resultControls());
    column->addStretch();
    column->addLayout(buttonRow());
    column->addSpacing(6);
    column->addLayout(peakControls());
    column->addLayout(measureButtons());
}

QLayout* Form7::regionControls() {
    auto* grid = new QGridLayout;
    grid->addWidget(label("Low ch"), 0, 1, Qt::AlignHCenter);
    grid->addWidget(label("High ch"), 0, 2, Qt::AlignHCenter);
    grid->addWidget(label("sum"), 0, 3, Qt::AlignHCenter);
    struct Row {
        const char* caption;
        QLineEdit* low;
        QLineEdit* high;
        QLineEdit* sum;
    };
    int place = 1;
    for (const Row& row :
         {Row{"&BKG1(l)", lowBackgroundFrom, lowBackgroundTo, lowBackgroundSum},
          Row{"&Peak", peakFrom, peakTo, peakSum},
          Row{"B&KG2(h)", highBackgroundFrom, highBackgroundTo, highBackgroundSum}}) {
        QLabel* caption = label(row.caption);
        caption->setBuddy(row.low);
        grid->addWidget(caption, place, 0);
        grid->addWidget(row.low, place, 1);
        grid->addWidget(row.high, place, 2);
        grid->addWidget(row.sum, place, 3);
        ++place;
    }
    grid->setColumnStretch(3, 1);
    return grid;
}

QLayout* Form7::resultControls() {
    auto* grid = new QGridLayout;
    grid->addWidget(label("Net Area"), 0, 0);
    grid->addWidget(netArea, 0, 1, 1, 2);
    grid->addWidget(label("CPS"), 1, 0);
    grid->addWidget(countRate, 1, 1, 1, 2);
    grid->addWidget(label("error(%)"), 2, 0);
    grid->addWidget(relativeError, 2, 1);
    QLabel* remarkLabel = label("&Remark");
    remarkLabel->setBuddy(remark);
    grid->addWidget(remarkLabel, 3, 0);
    grid->addWidget(remark, 3, 1, 1, 2);
    grid->setColumnStretch(2, 1);
    return grid;
}

QLayout* Form7::buttonRow() {
    auto* row = new QHBoxLayout;
    row->addWidget(previousButton);
    row->addWidget(setNumber);
    row->addWidget(nextButton);
    row->addStretch();
    row->addWidget(clearButton);
    setNumber->setFixedWidth(setNumber->minimumWidth());
    return row;
}

QLayout* Form7::peakControls() {
    auto* grid = new QGridLayout;
    grid->addWidget(label("Centroid"), 0, 0);
    grid->addWidget(centroid, 0, 1);
    grid->addWidget(label("FWHM"), 1, 0);
    grid->addWidget(fwhm, 1, 1);
    return grid;
}

QLayout* Form7::measureButtons() {
    auto* row = new QHBoxLayout;
    for (QPushButton* made : {autoButton, allPeaksButton, undoButton, loadButton}) {
        const QKeySequence key = QKeySequence::mnemonic(made->text());
        made->setToolTip(made->accessibleName() + QLatin1String(" (") +
                         key.toString(QKeySequence::NativeText) +
                         QLatin1String(made == undoButton ? ", Ctrl+Z)" : ")"));
        // Four of them are no wider than what stands above.
        made->setMinimumWidth(made->fontMetrics().horizontalAdvance(made->text()) + 8);
        row->addWidget(made);
    }
    return row;
}

void Form7::setTabOrders() {
    QWidget* order[] = {lowBackgroundFrom,  lowBackgroundTo,  peakFrom,   peakTo,
                        highBackgroundFrom, highBackgroundTo, remark,     previousButton,
                        nextButton,         clearButton,      autoButton, allPeaksButton,
                        undoButton,         loadButton};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
    // Enter goes the same way, as far as ">".
    QWidget* next[] = {lowBackgroundTo,    peakFrom,         peakTo,
                       highBackgroundFrom, highBackgroundTo, remark};
    for (std::size_t i = 0; i < std::size(next); ++i)
        connect(bounds()[i], &QLineEdit::returnPressed, next[i], qOverload<>(&QWidget::setFocus));
    connect(remark, &QLineEdit::returnPressed, nextButton, qOverload<>(&QWidget::setFocus));
}

void Form7::connectControls() {
    for (std::size_t i = 0; i < bounds().size(); ++i) {
        QLineEdit* bound = bounds()[i];
        bound->installEventFilter(this);
        takeNumbers(*bound);
        connect(bound, &QLineEdit::textEdited, this, [this, i](const QString& text) {
            keepBeforeTyping();
            fields_.bounds.texts[i] = fromWindow(text);
            showWhetherMeasured();
        });
        connect(bound, &QLineEdit::editingFinished, this, [this] {
            typing_ = false;
            emit regionsChanged();
        });
    }
    remark->installEventFilter(this);
    remark->setValidator(new RemarkLimit(remark));
    selectOnFocus(*remark);
    connect(remark, &QLineEdit::textEdited, this, [this](const QString& text) {
        keepBeforeTyping();
        fields_.remark = fromWindow(text);
    });
    connect(remark, &QLineEdit::editingFinished, this, [this] { typing_ = false; });
    connectMeasuring();
    connect(previousButton, &QPushButton::clicked, this, &Form7::showPrevious);
    connect(nextButton, &QPushButton::clicked, this, &Form7::showNext);
    connect(clearButton, &QPushButton::clicked, this, &Form7::clearSet);
}

void Form7::connectMeasuring() {
    connect(autoButton, &QPushButton::clicked, this, [this] { fill(measureNearestPeak); });
    connect(allPeaksButton, &QPushButton::clicked, this, [this] { fill(measureAllPeaks); });
    connect(loadButton, &QPushButton::clicked, this, [this] { fill(loadSets); });
    connect(undoButton, &QPushButton::clicked, this, &Form7::undo);
    auto* key = new QShortcut(QKeySequence::Undo, this);
    connect(key, &QShortcut::activated, this, &Form7::undo);
}

}  // namespace kestrel
