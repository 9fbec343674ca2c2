#pragma once
// The editors rely on a control's change handler running when code sets its value, exactly as
// when the user changes it: selecting a part sets the texture field, whose handler fills the
// point list; selecting a vertex sets the fields, whose handlers store their numbers back. Every
// handled control is bound here once, and code sets such a control only through here, which runs
// the bound handler once, also when the value does not change.
#include <QHash>
#include <QString>
#include <functional>

class QComboBox;
class QLineEdit;
class QObject;

class ChangeHandlers {
public:
    // Runs on every change of the field's text by the user: typing, cut, paste, undo.
    void bind(QLineEdit* field, std::function<void()> handler);
    // Runs when the user picks a row, also the row it already shows, and for a box with an edit
    // field on every change of its text.
    void bind(QComboBox* box, std::function<void()> handler);

    void setText(QLineEdit* field, const QString& text);
    // The edit field of an editable box.
    void setText(QComboBox* box, const QString& text);
    void setRow(QComboBox* box, int row);
    // Refills a box without running its handler: filling a list picks no row. A box without an
    // edit field is left with no row picked.
    void fill(QComboBox* box, const QStringList& rows);

    // Runs after the handler of a change that the user made, not code: the window records its
    // step there.
    void afterUserChange(std::function<void(QObject* control)> hook) { userChange_ = std::move(hook); }

private:
    void run(QObject* control);
    void runForUser(QObject* control);
    QHash<QObject*, std::function<void()>> handlers_;
    std::function<void(QObject*)> userChange_;
};
