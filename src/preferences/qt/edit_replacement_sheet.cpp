#include "preferences/qt/edit_replacement_sheet.h"

#include "preferences/qt/form_parts.h"
#include "preferences/typed_fields.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShortcut>

namespace glyma::qt {

EditReplacementSheet::EditReplacementSheet(UserReplacement draft,
                                           std::function<void(const UserReplacement&)> onSave,
                                           QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::Sheet)
    , draft_(std::move(draft))
    , onSave_(std::move(onSave))
    , name_(new QLineEdit(QString::fromStdString(draft_.name)))
    , keywords_(new QLineEdit(QString::fromStdString(joinKeywords(draft_.keywords))))
    , text_(new QPlainTextEdit(QString::fromStdString(draft_.text))) {
    const auto title = draft_.name.empty() ? tr("New Replacement") : QString::fromStdString(draft_.name);
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_WindowPropagation);
    name_->setPlaceholderText(tr("Display name"));
    keywords_->setPlaceholderText(tr("Comma-separated"));
    // Tab leads on to the buttons, as everywhere in the window.
    text_->setTabChangesFocus(true);
    text_->setMinimumHeight(110);

    auto* heading = makeSectionHeader(title);
    heading->setTextFormat(Qt::PlainText);
    heading->setWordWrap(true);
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->addRow(tr("&Name"), name_);
    form->addRow(tr("&Keywords"), keywords_);
    form->addRow(tr("&Text"), text_);
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter})
        connect(new QShortcut(Qt::CTRL | key, this), &QShortcut::activated, this,
                &EditReplacementSheet::accept);

    auto* layout = makePageLayout(this);
    layout->addWidget(heading);
    layout->addLayout(form);
    addSheetButtons(*this, *layout, tr("&Save"));
    resize(440, sizeHint().height());
}

void EditReplacementSheet::accept() {
    draft_.name = name_->text().toStdString();
    draft_.keywords = splitKeywords(keywords_->text().toStdString());
    draft_.text = text_->toPlainText().toStdString();
    onSave_(draft_);
    QDialog::accept();
}

} // namespace glyma::qt
