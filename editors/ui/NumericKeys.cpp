#include "editors/ui/NumericKeys.h"

#include <QKeyEvent>
#include <QLineEdit>

#include "core/myOps.h"

namespace {

class NumericKeyGate : public QObject {
public:
    explicit NumericKeyGate(QLineEdit* field) : QObject(field), field_(field) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != field_ || event->type() != QEvent::KeyPress) return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        // The desktop gives Delete a character of its own (DEL); it types nothing here either.
        if (key->text().isEmpty() || key->key() == Qt::Key_Delete) return false;
        const int typed = static_cast<int>(key->text().at(0).unicode());
        return NumericKeyFilter(typed, field_->text().toStdString()) == 0;
    }

private:
    QLineEdit* field_;
};

}  // namespace

void FilterNumericKeys(QLineEdit* field) { field->installEventFilter(new NumericKeyGate(field)); }
