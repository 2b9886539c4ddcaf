#include <iModelStage/reporting/iExceptionItem.h>

#include <iModelStage/model/iNodeGroup.h>

iExceptionItem::iExceptionItem(std::string const& id, ItemType type, iNodeGroup* object, std::string const& message,
                               std::string const& description, char const* iaClass)
    : m_object(object),
      m_type(type),
      m_id(id),
      m_message(message),
      m_description(description),
      m_iaClass(iaClass ? iaClass : "")
{
}

std::string iExceptionItem::getFormattedMessage() const
{
    if (iNodeGroup* object = m_object.get())
        return m_message + " : " + object->get_name();
    return m_message;
}
