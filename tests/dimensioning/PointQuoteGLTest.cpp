#include <iModelStage/dimensioning/iPointQuote.h>

#include <gtest/gtest.h>

#include <QFont>
#include <QFontMetrics>
#include <QImage>

// The flag is painted at twice the measured text size, its top edge at the
// point, the notch 2 pixels in from the left.
TEST(PointQuoteFlag, PaintedAtTwiceTheTextSize)
{
    osg::ref_ptr<iPointQuote> quote = new iPointQuote;
    quote->setColor(osg::Vec4f(1.0f, 0.0f, 0.0f, 1.0f));
    quote->setText("(1, 2, 3)");
    quote->forceGeometryUpdate();
    QRect const measured = QFontMetrics(QFont("Arial", 12)).boundingRect("(1, 2, 3)");
    osg::Image* image = quote->getImage();
    ASSERT_EQ(image->s(), 2 * measured.width());
    ASSERT_EQ(image->t(), 2 * measured.height());
    EXPECT_EQ(image->getPixelFormat(), GLenum(0x80e1));
    EXPECT_EQ(quote->getOffsetTransform()->getPosition(), osg::Vec3d(0, -2.0 * measured.height(), 0));

    // Rows are stored bottom up; read them back top down as B, G, R, A.
    QImage const picture =
        QImage(image->data(), image->s(), image->t(), QImage::Format_ARGB32).mirrored(false, true);
    int const inside = measured.height() / 2 + 4;
    QColor const fill = picture.pixelColor(measured.width() - 3, inside);
    EXPECT_EQ(fill.red(), 255);
    EXPECT_EQ(fill.alpha(), 255);
    EXPECT_EQ(picture.pixelColor(picture.width() - 1, picture.height() - 1).alpha(), 0);

    quote->setText("");
    quote->forceGeometryUpdate();
    EXPECT_EQ(quote->getImage()->t(), 0);
}
