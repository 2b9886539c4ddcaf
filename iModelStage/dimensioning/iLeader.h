#ifndef IMODELSTAGE_DIMENSIONING_ILEADER_H
#define IMODELSTAGE_DIMENSIONING_ILEADER_H

#include <iModelStage/dimensioning/iBaseQuote.h>

// A leader line with a landing at the object's position. The lines are
// drawn by the renderer the application registers for the class.
class IMODELSTAGE_EXPORT iLeader : public iBaseQuote {
    I_CLASS(iLeader, iBaseQuote, 1)
    I_OSG_NODE(iLeader)
    I_PROPERTY(double, bleaderline)
    I_PROPERTY(double, hleaderline)
    I_PROPERTY(double, lenlandingline)
    I_PROPERTY(bool, flip)
public:
    iLeader();
    iLeader(iLeader const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

    void slotbleaderlineChanged(iRoot* source, double value);
    void slothleaderlineChanged(iRoot* source, double value);
    void slotlenlandinglineChanged(iRoot* source, double value);
    void slotflipChanged(iRoot* source, bool value);
    void slotquotecolorChanged(iRoot* source, osg::Vec4f color);
    void slotMatrixChanged(iTransformGroup* group);

protected:
    ~iLeader() override;

private:
    void connectSlots();
};

#endif
