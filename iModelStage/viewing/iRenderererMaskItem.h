#ifndef IMODELSTAGE_VIEWING_IRENDERERERMASKITEM_H
#define IMODELSTAGE_VIEWING_IRENDERERERMASKITEM_H

#include <iModelStage/frame/iExport.h>

#include <QString>

#include <string>

// One switchable class of rendered objects in a viewer: the node-mask bits
// it stands for, a user label, the host's option class name, and whether
// the viewer shows it.
class IMODELSTAGE_EXPORT iRenderererMaskItem {
public:
    iRenderererMaskItem() = default;
    iRenderererMaskItem(unsigned int mask, QString const& label, std::string const& optClass, bool enabled)
        : m_mask(mask), m_label(label), m_optClass(optClass), m_enabled(enabled)
    {
    }

    unsigned int getMask() const { return m_mask; }
    QString getLabel() const { return m_label; }
    std::string getOptClass() const { return m_optClass; }
    bool getEnabled() const { return m_enabled; }
    void setEnabled(bool on) { m_enabled = on; }
    bool sharesBits(unsigned int mask) const { return (m_mask & mask) != 0; }

private:
    unsigned int m_mask = 1;
    QString m_label = QStringLiteral("Default");
    std::string m_optClass;
    bool m_enabled = true;
};

#endif
