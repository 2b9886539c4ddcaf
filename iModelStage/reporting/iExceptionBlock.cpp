#include <iModelStage/reporting/iExceptionBlock.h>

#include <iModelStage/frame/iTranslate.h>

I_REGISTER_CLASS(iExceptionBlock)

void iExceptionBlock::pushItem(iExceptionItem& item)
{
    item.m_parentBlock = this;
    switch (static_cast<int>(item.getType())) {
    case iExceptionItem::Information:
        ++m_informations;
        break;
    case iExceptionItem::Warning:
        ++m_warnings;
        break;
    case iExceptionItem::Error:
        ++m_errors;
        break;
    }
    m_items.push_back(item);
    sigItemPushed(m_items.back());
}

void iExceptionBlock::cancel(bool)
{
    iExceptionItem item("iExceptionBlock::canceled", iExceptionItem::Error, nullptr, iTranslate("Annullato"),
                        iTranslate("Azione annullata"), "");
    pushItem(item);
    m_canceled = true;
    sigCanceled();
}
