#pragma once
// What the editor windows share in making their controls: document text (Windows-1252 bytes)
// shown in a control and typed text stored back, and controls named as the window's design
// names them.
#include <QObject>
#include <QString>
#include <string>
#include <string_view>

#include "core/Cp1252.h"

inline QString UiText(std::string_view bytes) { return QString::fromStdString(Cp1252ToUtf8(bytes)); }
inline std::string DocumentText(const QString& text) { return Utf8ToCp1252(text.toStdString()); }

template <class T>
T* Named(T* control, const char* name) {
    control->setObjectName(QString::fromLatin1(name));
    return control;
}
