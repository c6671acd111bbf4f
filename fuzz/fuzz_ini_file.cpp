// An INI file of any bytes: everything in it reads as text or falls back to the default, and
// a value written into it reads back from the file, whatever was there before.

#include "FuzzSupport.h"

#include "platform/rtl/Exceptions.h"
#include "platform/rtl/IniFiles.h"
#include "platform/rtl/Strings.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

using namespace qdb;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("fuzz.ini"));
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        file.write(reinterpret_cast<const char *>(data), qint64(size));
    }
    try {
        TIniFile ini(path);
        TStringList sections;
        ini.ReadSections(sections);
        for (int i = 0; i < sections.Count() && i < 16; ++i) {
            const QString section = sections.Strings(i);
            TStringList names;
            ini.ReadSection(section, names);
            TStringList values;
            ini.ReadSectionValues(section, values);
            for (int n = 0; n < names.Count() && n < 16; ++n) {
                ini.ReadInteger(section, names.Strings(n), 0);
                ini.ReadBool(section, names.Strings(n), false);
                ini.ReadFloat(section, names.Strings(n), 0);
            }
        }
        if (sections.Count() > 0)
            ini.DeleteKey(sections.Strings(0), QStringLiteral("Widths"));
        ini.WriteString(QStringLiteral("Fuzz Layout"), QStringLiteral("Widths"), QStringLiteral("64,80 ;x=y"));
        ini.UpdateFile();
    } catch (const EIniFileException &) {
        return 0; // a file that cannot be written is told
    }
    TIniFile again(path);
    if (again.ReadString(QStringLiteral("Fuzz Layout"), QStringLiteral("Widths"), QString()) != QStringLiteral("64,80 ;x=y")) {
        std::fprintf(stderr, "a value written does not read back\n");
        std::abort();
    }
    return 0;
}
