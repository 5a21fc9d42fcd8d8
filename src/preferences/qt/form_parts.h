#pragma once

#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>

class QDialog;
class QPushButton;

namespace glyma::qt {

// The parts of which the pages of the preferences are built. Widgets belong to their parents, as usual in Qt;
// what is added to a part belongs to it.

/// The heading of a section: bold, a heading to screen readers.
QLabel* makeSectionHeader(const QString& text, QWidget* parent = nullptr);

/// Explaining text: smaller, quieter, wraps.
QLabel* makeCaption(const QString& text, QWidget* parent = nullptr);

/// Says why something did not work; hidden until it has something to say.
QLabel* makeProblem(QWidget* parent = nullptr);
/// Shows the problem and has it read out; an empty one hides the label.
void showProblem(QLabel& label, const QString& problem);

/// A small button under a list, with a sign; its meaning is read out.
QPushButton* makeListButton(const QString& sign, const QString& meaning);

/// What screen readers say of a control: its name, from a label that may have a mnemonic, and its
/// description.
void describe(QWidget& control, const QString& label, const QString& caption = {});

/// Shows a value without telling the listeners of the switch.
void showChecked(QCheckBox& toggle, bool isChecked);

/// A vertical layout with the margins and the spacing of a page.
QVBoxLayout* makePageLayout(QWidget* page);

/// The buttons at the end of a sheet: one that gives it up and one that accepts it, which Return presses,
/// too. \return the latter.
QPushButton* addSheetButtons(QDialog& sheet, QBoxLayout& layout, const QString& accept);

/// Related rows on a ground of their own, with lines between them.
class FormGroup : public QFrame {
    Q_OBJECT

public:
    explicit FormGroup(QWidget* parent = nullptr);

    /// A switch with its label before it and its caption under the label. A click anywhere in the row toggles
    /// it.
    QCheckBox* addToggle(const QString& label, const QString& caption = {});
    /// A control with its label before it; the label's mnemonic goes to the control.
    void addRow(const QString& label, QWidget* control, const QString& caption = {});
    /// Something as wide as the group.
    /// \param hasMargins  whether it keeps the distance of a row from the group's edges.
    void addWide(QWidget* content, bool hasMargins = true);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void append(QWidget* row);

    QVBoxLayout* rows_;
};

} // namespace glyma::qt
