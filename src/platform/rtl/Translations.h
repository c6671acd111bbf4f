#pragma once

#include <QLocale>

namespace qdb {

// Installs the components' translation for the locale's language (German so far), and Qt's
// own for its standard texts where it is installed; false when the components have none for
// that language. A later call replaces what an earlier one installed. Filter expressions
// written for data sets are never translated.
bool InstallTranslations(const QLocale &locale = QLocale());

} // namespace qdb
