#include "TestSupport.h"

#include <QSet>

#include <QApplication>
#include <QFile>
#include <QProgressDialog>
#include <QTest>

namespace qdb {

ProgressEscaper::ProgressEscaper()
{
    QObject::connect(&timer_, &QTimer::timeout, [this] {
        if (auto *progress = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget())) {
            seen_ = true;
            QTest::keyClick(progress, Qt::Key_Escape);
        }
    });
    timer_.start(50);
}

TFormatSettings GermanStyleSettings()
{
    TFormatSettings fs = TFormatSettings::Invariant();
    fs.DecimalSeparator = QLatin1Char(',');
    fs.ThousandSeparator = QLatin1Char('.');
    fs.DateSeparator = QLatin1Char('.');
    fs.ShortDateFormat = QStringLiteral("dd/mm/yyyy");
    fs.ShortTimeFormat = QStringLiteral("hh:nn");
    fs.LongTimeFormat = QStringLiteral("hh:nn:ss");
    return fs;
}

QString ReadTextFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(f.readAll());
}

void WriteTextFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write(bytes);
}

int DistinctColors(const QImage &image)
{
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colors.insert(image.pixel(x, y));
    return int(colors.size());
}

} // namespace qdb
