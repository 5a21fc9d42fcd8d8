#include "preferences/qt/form_parts.h"

#include "preferences/qt/toggle_switch.h"
#include "preferences/qt/window_palette.h"

#include <QAccessibleWidget>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

namespace glyma::qt {

namespace {

constexpr double cornerRadius = 9;
constexpr int rowMargin = 14;
constexpr QMargins rowMargins(rowMargin, 9, rowMargin, 9);

class SectionHeader : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;
};

class SectionHeaderAccessible : public QAccessibleWidget {
public:
    explicit SectionHeaderAccessible(QWidget* header)
        : QAccessibleWidget(header, QAccessible::Heading, static_cast<QLabel*>(header)->text()) {}
};

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    auto* header = qobject_cast<SectionHeader*>(object);
    return header ? new SectionHeaderAccessible(header) : nullptr;
}

/// A row whose whole surface toggles its switch.
class ToggleRow : public QWidget {
public:
    ToggleRow(QCheckBox* toggle, QWidget* parent)
        : QWidget(parent)
        , toggle_(toggle) {}

protected:
    void mousePressEvent(QMouseEvent* event) override { event->accept(); }
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
            toggle_->click();
    }

private:
    QCheckBox* toggle_;
};

QString withoutMnemonic(const QString& label) {
    QString text;
    for (qsizetype index = 0; index < label.size(); ++index)
        if (label[index] != QLatin1Char('&') || (++index < label.size()))
            text += label[index];
    return text;
}

/// The label and what explains it, one above the other.
QVBoxLayout* makeLabelColumn(const QString& label, QWidget* control, const QString& caption) {
    auto* column = new QVBoxLayout;
    column->setSpacing(2);
    auto* name = new QLabel(label);
    name->setBuddy(control);
    column->addStretch();
    column->addWidget(name);
    if (!caption.isEmpty())
        column->addWidget(makeCaption(caption));
    column->addStretch();
    return column;
}

void fillRow(QWidget* row, const QString& label, QWidget* control, const QString& caption) {
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(rowMargins);
    layout->setSpacing(16);
    layout->addLayout(makeLabelColumn(label, control, caption), 1);
    layout->addWidget(control, 0, Qt::AlignVCenter);
    describe(*control, label, caption);
}

QWidget* makeLine() {
    class Line : public QWidget {
        void paintEvent(QPaintEvent*) override {
            QPainter painter(this);
            painter.fillRect(rect().adjusted(rowMargin, 0, 0, 0), lineColor(palette()));
        }
    };
    auto* line = new Line;
    line->setFixedHeight(1);
    return line;
}

} // namespace

QLabel* makeSectionHeader(const QString& text, QWidget* parent) {
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
    auto* header = new SectionHeader(text, parent);
    auto font = header->font();
    font.setBold(true);
    header->setFont(font);
    header->setContentsMargins(4, 10, 4, 2);
    return header;
}

QLabel* makeCaption(const QString& text, QWidget* parent) {
    auto* caption = new QLabel(text, parent);
    auto font = caption->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    caption->setFont(font);
    caption->setForegroundRole(QPalette::PlaceholderText);
    caption->setWordWrap(true);
    return caption;
}

QLabel* makeProblem(QWidget* parent) {
    class Problem : public QLabel {
    public:
        using QLabel::QLabel;

    protected:
        void paintEvent(QPaintEvent*) override {
            QPainter painter(this);
            painter.setPen(badColor(palette()));
            painter.drawText(contentsRect(), Qt::AlignLeading | Qt::TextWordWrap, text());
        }
    };
    auto* label = new Problem(parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setContentsMargins(4, 0, 4, 0);
    label->hide();
    return label;
}

QPushButton* makeListButton(const QString& sign, const QString& meaning) {
    auto* button = new QPushButton(sign);
    button->setFixedWidth(button->sizeHint().height() + 8);
    button->setAutoDefault(false);
    button->setAccessibleName(meaning);
    button->setToolTip(meaning);
    return button;
}

void showProblem(QLabel& label, const QString& problem) {
    label.setText(problem);
    label.setVisible(!problem.isEmpty());
    if (!problem.isEmpty()) {
        QAccessibleEvent alert(&label, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void describe(QWidget& control, const QString& label, const QString& caption) {
    control.setAccessibleName(withoutMnemonic(label));
    control.setAccessibleDescription(caption);
}

void showChecked(QCheckBox& toggle, bool isChecked) {
    const QSignalBlocker blocker(toggle);
    toggle.setChecked(isChecked);
}

QVBoxLayout* makePageLayout(QWidget* page) {
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(20, 16, 20, 20);
    layout->setSpacing(8);
    return layout;
}

QPushButton* addSheetButtons(QDialog& sheet, QBoxLayout& layout, const QString& accept) {
    auto* buttons = new QDialogButtonBox;
    // Of buttons that may be the default one, a dialog takes the first, whichever was said to be it before.
    buttons->addButton(FormGroup::tr("Cancel"), QDialogButtonBox::RejectRole)->setAutoDefault(false);
    auto* accepting = buttons->addButton(accept, QDialogButtonBox::AcceptRole);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &sheet, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &sheet, &QDialog::reject);
    layout.addWidget(buttons);
    accepting->setDefault(true);
    return accepting;
}

FormGroup::FormGroup(QWidget* parent)
    : QFrame(parent)
    , rows_(new QVBoxLayout(this)) {
    rows_->setContentsMargins(1, 1, 1, 1);
    rows_->setSpacing(0);
}

QCheckBox* FormGroup::addToggle(const QString& label, const QString& caption) {
    auto* toggle = new ToggleSwitch;
    auto* row = new ToggleRow(toggle, this);
    fillRow(row, label, toggle, caption);
    append(row);
    return toggle;
}

void FormGroup::addRow(const QString& label, QWidget* control, const QString& caption) {
    auto* row = new QWidget(this);
    fillRow(row, label, control, caption);
    append(row);
}

void FormGroup::addWide(QWidget* content, bool hasMargins) {
    auto* row = new QWidget(this);
    auto* layout = new QVBoxLayout(row);
    layout->setContentsMargins(hasMargins ? rowMargins : QMargins());
    layout->addWidget(content);
    append(row);
}

void FormGroup::append(QWidget* row) {
    if (rows_->count() > 0)
        rows_->addWidget(makeLine());
    rows_->addWidget(row);
}

void FormGroup::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(lineColor(palette()));
    painter.setBrush(cardColor(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

} // namespace glyma::qt

#include "form_parts.moc"
