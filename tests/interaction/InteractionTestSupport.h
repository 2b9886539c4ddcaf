#ifndef IMODELSTAGE_TESTS_INTERACTION_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_INTERACTION_TEST_SUPPORT_H

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iImmediateInteractor.h>
#include <iModelStage/interaction/iInteractor.h>
#include <iModelStage/interaction/iInteractorInputHandler.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/interaction/iStackedInteractor.h>

#include <gtest/gtest.h>

#include <QString>

#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

typedef std::vector<std::string> Log;

// One line per emission: the label, then each argument in a readable form
// (texts, numbers, the global position of a point).
class SignalLog {
public:
    template <class... Args>
    void listen(sigslot::_signal_impl<sigslot::multi_threaded_local, Args...>& signal, std::string label)
    {
        taps.push_back(std::make_unique<Tap>(this, std::move(label)));
        signal.connect(taps.back().get(), &Tap::template on<Args...>);
    }
    Log take() { return std::exchange(log, {}); }
    Log log;

private:
    template <class T>
    static std::string text(T const& value)
    {
        if constexpr (std::is_same_v<T, QString>)
            return value.toStdString();
        else if constexpr (std::is_same_v<T, iIAPoint>) {
            std::ostringstream out;
            out << value.getGlobalPos().x() << "," << value.getGlobalPos().y() << "," << value.getGlobalPos().z();
            return out.str();
        } else if constexpr (std::is_enum_v<T> || std::is_integral_v<T>)
            return std::to_string(static_cast<long>(value));
        return "";
    }
    struct Tap : iSlot {
        Tap(SignalLog* owner, std::string label) : owner(owner), label(std::move(label)) {}
        template <class... Args>
        void on(Args... args)
        {
            std::string line = label;
            for (std::string const& part : {std::string(), text(args)...})
                if (!part.empty())
                    line += ":" + part;
            owner->log.push_back(line);
        }
        SignalLog* owner;
        std::string label;
    };
    std::vector<std::unique_ptr<Tap>> taps;
};

inline iIAPoint at(float x, float y, float z = 0.0f)
{
    osg::Vec3f const p(x, y, z);
    return iIAPoint(osg::Vec3f(), osg::Vec3f(), p, p);
}

// A tool of two points with a closing prompt, counting its hooks; it can
// be told to end on its own (immediate tools) and to free some axes only.
class iTwoPointsIA : public iInteractor {
    I_CLASS(iTwoPointsIA, iInteractor, 1)
public:
    iTwoPointsIA()
    {
        setNumSteps(2);
        addStep(QString("Primo punto"), iIATypeVec3, osg::Vec3f());
        addStep(QString("Secondo punto"), iIATypeVec3, osg::Vec3f());
        addStep(QString("Fatto"), iIATypeVec3, osg::Vec3f());
    }
    ~iTwoPointsIA() override
    {
        if (destroyed)
            *destroyed = true;
    }
    int getIPlaneConstraint(int) override { return constraint; }

    using iInteractor::addStep;
    using iInteractor::clearSteps;
    using iInteractor::emitMessage;
    using iInteractor::project3DTo2D;
    using iInteractor::setCurrentStep;

    int inits = 0;
    int updates = 0;
    int constraint = 7;
    bool* destroyed = nullptr;

protected:
    void init() override { ++inits; }
    void doUpdate() override { ++updates; }
};

class iOtherPointsIA : public iTwoPointsIA {
    I_CLASS(iOtherPointsIA, iTwoPointsIA, 1)
};

class iStackedTestIA : public iStackedInteractor {
    I_CLASS(iStackedTestIA, iStackedInteractor, 1)
public:
    iStackedTestIA() { setNumSteps(1); }
};

class iImmediateTestIA : public iImmediateInteractor {
    I_CLASS(iImmediateTestIA, iImmediateInteractor, 1)
public:
    ~iImmediateTestIA() override
    {
        if (destroyed)
            *destroyed = true;
    }
    void start() override
    {
        iImmediateInteractor::start();
        ++starts;
    }
    void end() override
    {
        iImmediateInteractor::end();
        ++ends;
    }
    int starts = 0;
    int ends = 0;
    bool* destroyed = nullptr;
};

// The class records of the test tools, once per test program.
#define INTERACTION_TEST_CLASSES                                                                                      \
    I_DEFINE_CLASS(iTwoPointsIA)                                                                                      \
    I_DEFINE_CLASS(iOtherPointsIA)                                                                                    \
    I_DEFINE_CLASS(iStackedTestIA)                                                                                    \
    I_DEFINE_CLASS(iImmediateTestIA)

#endif
