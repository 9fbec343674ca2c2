#include "editors/ui/ChangeHandlers.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>

void ChangeHandlers::bind(QLineEdit* field, std::function<void()> handler) {
    handlers_.insert(field, std::move(handler));
    QObject::connect(field, &QLineEdit::textChanged, field, [this, field] { runForUser(field); });
}

void ChangeHandlers::bind(QComboBox* box, std::function<void()> handler) {
    handlers_.insert(box, std::move(handler));
    QObject::connect(box, &QComboBox::activated, box, [this, box] { runForUser(box); });
    if (box->isEditable()) QObject::connect(box, &QComboBox::editTextChanged, box, [this, box] { runForUser(box); });
}

void ChangeHandlers::setText(QLineEdit* field, const QString& text) {
    {
        const QSignalBlocker quiet(field);
        field->setText(text);
    }
    run(field);
}

void ChangeHandlers::setText(QComboBox* box, const QString& text) {
    {
        const QSignalBlocker quiet(box);
        box->setEditText(text);
    }
    run(box);
}

void ChangeHandlers::setRow(QComboBox* box, int row) {
    {
        const QSignalBlocker quiet(box);
        box->setCurrentIndex(row);
    }
    run(box);
}

void ChangeHandlers::fill(QComboBox* box, const QStringList& rows) {
    const QSignalBlocker quiet(box);
    box->clear();
    box->addItems(rows);
    if (!box->isEditable()) box->setCurrentIndex(-1);
}

void ChangeHandlers::runForUser(QObject* control) {
    run(control);
    if (userChange_) userChange_(control);
}

void ChangeHandlers::run(QObject* control) {
    const auto handler = handlers_.value(control);
    if (handler) handler();
}
