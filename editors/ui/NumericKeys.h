#pragma once
// The UV fields of both editors take only what NumericKeyFilter lets through. Keys that type
// no character (arrows, Delete, Home) are not typed keys and pass; every key that types one is
// filtered, so control characters such as Ctrl+V's are dropped too.
#include <string>

#include "core/myOps.h"

class QLineEdit;

// `filter` gives the key back when it may pass and 0 when it is dropped.
using KeyFilter = int (*)(int key, const std::string& text);
void FilterNumericKeys(QLineEdit* field, KeyFilter filter = NumericKeyFilter);
