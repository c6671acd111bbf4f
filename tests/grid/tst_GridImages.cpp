#include "grid/QDBGridImages.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace qdb;

TEST(GridImages, TheVariantFollowsTheDensity)
{
    struct Case
    {
        int ppi;
        const char *suffix;
        int size; // of one indicator image
    };
    const Case cases[] = {{96, "", 16},     {110, "", 18},     {120, "_125", 20}, {143, "_125", 23},
                          {144, "_150", 24}, {168, "_175", 28}, {192, "_200", 32}, {250, "_200", 41}};
    for (const Case &c : cases) {
        EXPECT_EQ(DensityVariant(c.ppi).suffix, QString::fromLatin1(c.suffix)) << c.ppi;
        const TGridImageList list = TGridImageList::Load(QStringLiteral("QDBINDICATORS"), c.ppi);
        EXPECT_EQ(list.PixelSize(), c.size) << c.ppi;
        if (c.ppi % 24 == 0) {
            EXPECT_EQ(list.Size(), 16) << c.ppi; // in widget pixels they keep their size
        }
        EXPECT_EQ(list.Count(), 5) << c.ppi;
    }
}

TEST(GridImages, EveryStripLoadsWithItsImages)
{
    const QPair<const char *, int> strips[] = {
        {"QDBINDICATORS", 5}, {"QDBMARKERS", 2}, {"QDBCHECKBOXES", 9}, {"QDBEXPANDBOXES", 6}};
    for (const auto &[name, count] : strips)
        for (int ppi : {96, 120, 144, 168, 192})
            EXPECT_EQ(TGridImageList::Load(QString::fromLatin1(name), ppi).Count(), count) << name << " " << ppi;
    EXPECT_EQ(TGridImageList::Load(QStringLiteral("NOSUCHSTRIP"), 96).Count(), 0);
}

TEST(GridImages, OliveIsTransparent)
{
    const QImage strip = LoadDensityBitmap(QStringLiteral("QDBINDICATORS"), 96);
    ASSERT_FALSE(strip.isNull());
    EXPECT_EQ(qAlpha(strip.pixel(0, 0)), 0); // a corner is background
    const QImage arrow = TGridImageList::FromStrip(strip).Image(0).toImage();
    EXPECT_GT(qAlpha(arrow.pixel(7, 8)), 0); // the arrow itself is opaque
    QImage raw(2, 1, QImage::Format_RGB32);
    raw.setPixel(0, 0, qRgb(128, 128, 0));
    raw.setPixel(1, 0, qRgb(128, 128, 1));
    const QImage masked = MaskOlive(raw);
    EXPECT_EQ(qAlpha(masked.pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(masked.pixel(1, 0)), 255);
}
