#include "model/ModelTestSupport.h"

#include <iModelStage/reporting/iSearcher.h>

#include <algorithm>

namespace {

class Searcher : public LayersTest {
protected:
    void SetUp() override
    {
        LayersTest::SetUp();
        ghost = iLayersManager::registerNodeLayerClass("iGhostLayer", "c-ghost");
        a->addObject(make("Muro nord").get(), false);
        osg::ref_ptr<iNodeGroup> south = make("muro SUD");
        a->addObject(south.get(), false);
        a->addChildObject(south.get(), make("Porta del muro").get(), false);
        a->addObject(make("").get(), false);
        a->addObject(make("__#iGeometricRendererNodes#__").get(), false);
        b->addObject(make("Finestra muro").get(), false);
        if (ghost)
            ghost->addObject(make("Muro fantasma").get(), false);
    }
    void TearDown() override
    {
        for (char const* name : {"iNodeLayer", "iCreateLeaderIA", "iCreatePointQuoteIA"})
            iRoot::setClassAlias(name, name);
    }
    // Each hit as "L:layer", "O:layer/object" or "T:class", for hits in
    // the test's own layers and tools.
    std::vector<std::string> find(std::string const& text, bool* found = nullptr)
    {
        std::list<iSearcherItem> hits;
        bool const any = searcher.search(manager.get(), text, hits);
        if (found)
            *found = any;
        std::vector<std::string> out;
        for (iSearcherItem const& hit : hits) {
            if (hit.getLayer() && hit.getLayer() != a && hit.getLayer() != b && hit.getLayer() != ghost)
                continue;
            if (!hit.getInteractorClassName().empty())
                out.push_back("T:" + hit.getInteractorClassName());
            else if (!hit.getObject())
                out.push_back("L:" + nameOf(hit.getLayer()));
            else
                out.push_back("O:" + nameOf(hit.getLayer()) + "/" + hit.getObject()->getName());
        }
        return out;
    }

    std::string nameOf(iNodeLayer* layer) const { return layer == a ? "a" : layer == b ? "b" : "c-ghost"; }

    iNodeLayer* ghost = nullptr;
    iSearcher searcher;
};

} // namespace

TEST_F(Searcher, WordsMatchInAnyOrderAndCase)
{
    ASSERT_NE(ghost, nullptr);
    EXPECT_EQ(find("MURO"),
              (std::vector<std::string>{"O:a/Muro nord", "O:a/muro SUD", "O:a/Porta del muro", "O:b/Finestra muro"}));
    EXPECT_EQ(find("sud  muro"), (std::vector<std::string>{"O:a/muro SUD"}));
    bool found = true;
    EXPECT_TRUE(find("muro tetto", &found).empty());
    EXPECT_FALSE(found);
}

TEST_F(Searcher, LayersFirstThenObjectsThenTools)
{
    iRoot::setClassAlias("iNodeLayer", "Livello della porta");
    iRoot::setClassAlias("iCreateLeaderIA", "Inserisci direttrice");
    iRoot::setClassAlias("iCreatePointQuoteIA", "Quota porta");
    EXPECT_EQ(find("PORTA"), (std::vector<std::string>{"L:a", "L:b", "O:a/Porta del muro", "T:iCreatePointQuoteIA"}));
    EXPECT_EQ(find("direttrice INSERISCI"), (std::vector<std::string>{"T:iCreateLeaderIA"}));

    // No words: every candidate, and never an unnamed object, the renderer
    // container or a tool without an alias.
    std::vector<std::string> const all = find("   ");
    EXPECT_EQ(std::count(all.begin(), all.end(), "T:iCreateLeaderIA"), 1);
    EXPECT_EQ(std::count(all.begin(), all.end(), "T:iCreateLinearQuoteIA"), 0);
    EXPECT_EQ(std::count(all.begin(), all.end(), "O:a/"), 0);
    EXPECT_EQ(std::count(all.begin(), all.end(), "O:a/__#iGeometricRendererNodes#__"), 0);
    EXPECT_EQ(std::count(all.begin(), all.end(), "O:c-ghost/Muro fantasma"), 0);
    EXPECT_EQ(std::count(all.begin(), all.end(), "O:b/Finestra muro"), 1);
}
