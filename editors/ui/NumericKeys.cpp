#include "editors/ui/NumericKeys.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace {

class NumericKeyGate : public QObject {
public:
    NumericKeyGate(QLineEdit* field, KeyFilter filter) : QObject(field), field_(field), filter_(filter) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != field_ || event->type() != QEvent::KeyPress) return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        // The desktop gives Delete a character of its own (DEL); it types nothing here either.
        if (key->text().isEmpty() || key->key() == Qt::Key_Delete) return false;
        const int typed = static_cast<int>(key->text().at(0).unicode());
        return filter_(typed, field_->text().toStdString()) == 0;
    }

private:
    QLineEdit* field_;
    KeyFilter filter_;
};

}  // namespace

void FilterNumericKeys(QLineEdit* field, KeyFilter filter) {
    field->installEventFilter(new NumericKeyGate(field, filter));
}
