#pragma once
// The UV fields of both editors take only what NumericKeyFilter lets through. Keys that type
// no character (arrows, Delete, Home) are not typed keys and pass; every key that types one is
// filtered, so control characters such as Ctrl+V's are dropped too.
class QLineEdit;

void FilterNumericKeys(QLineEdit* field);
