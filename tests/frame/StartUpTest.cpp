#include "frame/FrameTestSupport.h"

#include <iModelStage/frame/iClassIcons.h>
#include <iModelStage/frame/iRoot.h>
#include <iModelStage/frame/iStartUp.h>
#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/frame/iUnitConverterManager.h>

#include <gtest/gtest.h>

#include <QImage>

#include <osg/DisplaySettings>

#include <string>

namespace {

std::string info(char const* cls, char const* property)
{
    std::string label, category, hint, extra1, extra2;
    if (!iRoot::getPropertyInfo(cls, property, label, category, hint, extra1, extra2))
        return "missing";
    return label + "|" + category + "|" + hint + "|" + extra1 + "|" + extra2;
}

std::string alias(char const* cls)
{
    std::string text;
    iRoot::getClassAlias(cls, text);
    return text;
}

} // namespace

TEST(StartUpTest, PropertyInfoTable)
{
    // Properties that no class registers.
    EXPECT_EQ(info("iGeometricGroup", "deletable"), "Eliminabile|Stato|||");
    EXPECT_EQ(info("iGeometricGroup", "renderingtype"), "Visualizzazione|Rendering|||");
    EXPECT_EQ(info("iGeometricGroup", "rendererstate"), "Visualizza|Visualizzazione|||");
    EXPECT_EQ(info("iFileReferenceGroup", "movetoorig"),
              "Sposta all'origine|Generale|Sposta la geometria all'origine del sistema di riferimento locale||");
    EXPECT_EQ(info("iGridGroup", "vstep"), "Passo verticale  [m]|Griglia|Imposta il passo verticale||");
    // Crossed on purpose.
    EXPECT_EQ(info("iGridGroup", "clrvq"),
              "Colore quadranti orizzontali|Quadranti|Imposta il colore dei quadranti orizzontali||");
    EXPECT_EQ(info("iGridGroup", "clrhq"),
              "Colore quadranti verticali|Quadranti|Imposta il colore dei quadranti verticali||");
    EXPECT_EQ(info("iGridGroup", "nosuch"), "missing");
}

TEST(StartUpTest, AliasesIconsHandlersAndSettings)
{
    EXPECT_EQ(alias("iGridGroup"), "Griglia");
    EXPECT_EQ(alias("iFileReferenceGroup"), "Riferimento a file");
    EXPECT_EQ(alias("iInputPlanesLayer"), "Piani di lavoro");
    EXPECT_EQ(alias("iPanIA"), "Pan");
    EXPECT_EQ(alias("iCentroidSnap"), "Snap centroide");
    EXPECT_EQ(alias("iTransformGroup"), "iTransformGroup");

    QMap<QString, QString> const& icons = iGetClassIconsMap();
    EXPECT_EQ(icons.value("iGridGroup"), ":/images/grid.png");
    EXPECT_EQ(icons.value("iFileReferenceGroup"), ":/images/file.png");
    EXPECT_EQ(icons.value("iTransformGroup"), ":/images/transf.png");
    EXPECT_EQ(icons.value("iInputPlane"), ":/images/iplane.png");
    for (char const* path : {":/images/grid.png", ":/images/file.png", ":/images/transf.png", ":/images/iplane.png"}) {
        QImage image(path);
        EXPECT_EQ(image.size(), QSize(24, 24)) << path;
        EXPECT_TRUE(image.hasAlphaChannel()) << path;
    }

    EXPECT_FALSE(iUnitConverterManager::registerConverterItem("iUCVec3fRadToGrad"));
    EXPECT_EQ(osg::DisplaySettings::instance()->getMinimumNumStencilBits(), 8u);
    EXPECT_EQ(iBoundLocale(), "iKit");

    // The routine acts once.
    iRoot::setClassAlias("iPanIA", "tSpostamento");
    iModelStage_startUp();
    EXPECT_EQ(alias("iPanIA"), "tSpostamento");
    iRoot::setClassAlias("iPanIA", "Pan");
}

TEST(ClassIconsTest, LookupsInsertAndLaterValuesWin)
{
    QString const iconless = QString::fromStdString(freshName("tIconless"));
    EXPECT_FALSE(iGetClassIconsMap().contains(iconless));
    EXPECT_EQ(iGetClassIcon(iconless), QString());
    EXPECT_TRUE(iGetClassIconsMap().contains(iconless));

    iAddClassIcon("tIconic", ":/a.png");
    iAddClassIcon("tIconic", ":/b.png");
    EXPECT_EQ(iGetClassIcon("tIconic"), ":/b.png");
    iOverrideClassIcon("tIconic", ":/c.png");
    iOverrideClassIcon("tOverridden", ":/d.png");
    EXPECT_EQ(iGetClassIcon("tIconic"), ":/c.png");
    EXPECT_EQ(iGetClassIconsMap().value("tOverridden"), ":/d.png");

    iAddVirtualRootItemClass("tVirtual", "one");
    EXPECT_EQ(iGetVirtualItemMap().value("tVirtual"), "one");
    EXPECT_FALSE(iGetClassIconsMap().contains("tVirtual"));
}

TEST(TranslateTest, CatalogueOfTheBoundDomain)
{
    // Many more texts must not move the first one.
    char const* plain = iTranslate("Testo senza catalogo");
    for (int i = 0; i < 2000; ++i)
        iTranslate(std::to_string(i).c_str());
    EXPECT_STREQ(plain, "Testo senza catalogo");

    iLoadCatalogue("tAltroDominio", {{"Ciao", "Hi"}});
    EXPECT_STREQ(iTranslate("Ciao"), "Ciao");
    iLoadCatalogue(iBoundLocale().c_str(), {{"Ciao", "Hello"}});
    char const* translated = iTranslate("Ciao");
    EXPECT_STREQ(translated, "Hello");
    EXPECT_STREQ(iTranslate("Arrivederci"), "Arrivederci");

    iLoadCatalogue(iBoundLocale().c_str(), {});
    iLoadCatalogue("tAltroDominio", {});
    EXPECT_STREQ(iTranslate("Ciao"), "Ciao");
    EXPECT_STREQ(translated, "Hello");
}
