#pragma once

#include <QtGlobal>

#include <functional>

namespace qdb {

// Milliseconds of a steady clock, for input that depends on how long ago the last key came.
qint64 GetTickCount();
// Replaces the clock (tests step it by hand); an empty function gives the real one back.
void SetTickCountSource(std::function<qint64()> source);

} // namespace qdb
