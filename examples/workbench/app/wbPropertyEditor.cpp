#include "app/wbPropertyEditor.h"

#include <iModelStage/frame/iProperty.h>
#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iMaterialGroup.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iTransformGroup.h>

#include <QCheckBox>
#include <QColorDialog>
#include <QDoubleSpinBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>

#include <osg/Vec3f>

#include <cstring>
#include <exception>
#include <limits>

namespace {

bool isOneOf(char const* type, std::initializer_list<char const*> names)
{
    for (char const* name : names)
        if (std::strcmp(type, name) == 0)
            return true;
    return false;
}

QString colourStyle(iColor4 const& c)
{
    return QString("background-color: %1;").arg(QColor::fromRgbF(c.r(), c.g(), c.b()).name());
}

QString vectorText(osg::Vec3f const& v)
{
    return QString("%1 %2 %3").arg(v.x()).arg(v.y()).arg(v.z());
}

// Three numbers separated by blanks; false unless all three read.
bool readVector(QString const& text, osg::Vec3f& out)
{
    QStringList const parts = text.split(' ', Qt::SkipEmptyParts);
    if (parts.size() != 3)
        return false;
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        out[i] = parts[i].toFloat(&ok);
        if (!ok)
            return false;
    }
    return true;
}

QString freedomText(iTransformGroup::iDegreeOfFreedom dof)
{
    unsigned const bits = static_cast<unsigned>(dof);
    if (bits == iTransformGroup::DOF_NONE)
        return QObject::tr("fixed");
    if (bits == iTransformGroup::DOF_ALL)
        return QObject::tr("free");
    QStringList axes;
    char const* const names[3] = {"X", "Y", "Z"};
    for (int i = 0; i < 3; ++i)
        if (bits & (1u << i))
            axes << names[i];
    return QObject::tr("moves along %1").arg(axes.isEmpty() ? QObject::tr("no axis") : axes.join(' '));
}

// The value of a property that has no editor, as a user would read it.
QString readableValue(iProperty const& property, iNodeGroup* object)
{
    char const* type = property.getTypeName();
    if (isOneOf(type, {"iDegreeOfFreedom"}))
        return freedomText(property.get<iTransformGroup::iDegreeOfFreedom>(object));
    if (isOneOf(type, {"iMaterialGroupObserver", "iMaterialPreview"})) {
        iMaterialGroupObserver const material = property.get<iMaterialGroupObserver>(object);
        if (!material.valid())
            return QObject::tr("none");
        std::string const name = material->get_name();
        return name.empty() ? QObject::tr("unnamed material") : QString::fromStdString(name);
    }
    if (isOneOf(type, {"iImagePreview"}))
        return QString::fromStdString(property.get<std::string>(object));
    return QObject::tr("not editable here");
}

} // namespace

wbPropertyEditor::wbPropertyEditor(QWidget* parent)
    : QTreeWidget(parent)
{
    setObjectName("propertyEditor");
    setColumnCount(2);
    setHeaderLabels({tr("Property"), tr("Value")});
    header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    setRootIsDecorated(true);
}

void wbPropertyEditor::setObject(iNodeGroup* object)
{
    forget();
    m_object = object;
    clear();
    m_shows.clear();
    m_stale = false;
    if (!object)
        return;
    follow(object);
    addNameRow();
    // Base levels first, as the class grows from them.
    std::vector<iClass const*> chain;
    for (iClass const* level = &object->getClass(); level; level = level->getParent())
        chain.insert(chain.begin(), level);
    for (iClass const* level : chain)
        for (iProperty const* property : level->getProperties())
            addProperty(nullptr, *level, *property);
    expandAll();
}

void wbPropertyEditor::follow(iNodeGroup* object)
{
    object->sigPropertyChanged.connect(this, &wbPropertyEditor::slotPropertyChanged);
    object->sigNameChanged.connect(this, &wbPropertyEditor::slotNameChanged);
    if (auto* placed = dynamic_cast<iTransformGroup*>(object))
        placed->sigMatrixChanged.connect(this, &wbPropertyEditor::slotMatrixChanged);
}

void wbPropertyEditor::forget()
{
    iNodeGroup* object = m_object.get();
    if (!object)
        return;
    object->sigPropertyChanged.disconnect(this);
    object->sigNameChanged.disconnect(this);
    if (auto* placed = dynamic_cast<iTransformGroup*>(object))
        placed->sigMatrixChanged.disconnect(this);
}

void wbPropertyEditor::slotPropertyChanged(iRoot*, char const*)
{
    m_stale = true;
}

void wbPropertyEditor::slotMatrixChanged(iTransformGroup*)
{
    m_stale = true;
}

void wbPropertyEditor::slotNameChanged(iRoot*, std::string)
{
    m_stale = true;
}

void wbPropertyEditor::refresh()
{
    if (!m_stale)
        return;
    m_stale = false;
    if (!m_object.valid())
        return;
    for (auto const& show : m_shows) {
        try {
            show();
        } catch (std::exception const&) {
            // Left as it was shown.
        }
    }
}

void wbPropertyEditor::onRefresh(std::function<void()> show)
{
    m_shows.push_back(std::move(show));
}

void wbPropertyEditor::addNameRow()
{
    // The name belongs to every object but is no registered property.
    auto* item = new QTreeWidgetItem(categoryItem(tr("Object")), {tr("Name")});
    auto* line = new QLineEdit(QString::fromStdString(m_object->get_name()));
    line->setObjectName("prop.name");
    connect(line, &QLineEdit::editingFinished, this, [this, line] {
        std::string const name = line->text().toStdString();
        if (!m_object.valid() || m_object->get_name() == name)
            return;
        if (iLayersManager* document = iLayersManager::getInstance())
            document->storeForUndo(tr("Rename").toStdString());
        m_object->set_name(name);
        emit propertyWritten("name");
    });
    onRefresh([this, line] {
        QSignalBlocker quiet(line);
        line->setText(QString::fromStdString(m_object->get_name()));
    });
    setItemWidget(item, 1, line);
}

QTreeWidgetItem* wbPropertyEditor::categoryItem(QString const& name)
{
    for (int i = 0; i < topLevelItemCount(); ++i)
        if (topLevelItem(i)->text(0) == name)
            return topLevelItem(i);
    auto* item = new QTreeWidgetItem(this, {name});
    QFont font = item->font(0);
    font.setBold(true);
    item->setFont(0, font);
    item->setFirstColumnSpanned(true);
    return item;
}

// The shown category of a property without info: that of a property of the
// same registered group that has one, so that a group is not split in two.
std::string wbPropertyEditor::categoryOfGroup(iClass const& level, iProperty const& property)
{
    char const* registered = property.getGroup();
    if (!registered || !*registered)
        return level.getName();
    for (iProperty const* sibling : level.getProperties()) {
        std::string label, category, hint;
        if (sibling != &property && sibling->getGroup() && std::strcmp(sibling->getGroup(), registered) == 0 &&
            iRoot::getPropertyInfo(level.getName(), sibling->getName(), label, category, hint) && !category.empty())
            return category;
    }
    return registered;
}

void wbPropertyEditor::addProperty(QTreeWidgetItem* category, iClass const& level, iProperty const& property)
{
    char const* className = level.getName();
    std::string label, group, hint;
    if (!iRoot::getPropertyInfo(m_object->getClassName(), property.getName(), label, group, hint))
        iRoot::getPropertyInfo(className, property.getName(), label, group, hint);
    if (label.empty())
        label = property.getName();
    if (group.empty())
        group = categoryOfGroup(level, property);
    if (!category)
        category = categoryItem(QString::fromStdString(group));
    auto* item = new QTreeWidgetItem(category, {QString::fromStdString(label)});
    item->setToolTip(0, QString::fromStdString(hint.empty() ? std::string(property.getName()) : hint));
    QWidget* editor = makeEditor(property);
    editor->setObjectName(QString("prop.") + property.getName());
    setItemWidget(item, 1, editor);
}

QWidget* wbPropertyEditor::editorOf(char const* property) const
{
    return findChild<QWidget*>(QString("prop.") + property);
}

template <class T>
void wbPropertyEditor::write(iProperty const& property, T const& value)
{
    iNodeGroup* object = m_object.get();
    if (!object)
        return;
    try {
        if (property.get<T>(object) == value)
            return;
        if (iLayersManager* document = iLayersManager::getInstance())
            document->storeForUndo(tr("Change %1").arg(property.getName()).toStdString());
        property.set<T>(object, value);
    } catch (std::exception const&) {
        return;
    }
    if (auto* geometric = dynamic_cast<iGeometricGroup*>(object))
        geometric->updateGeometry(false);
    emit propertyWritten(property.getName());
}

QWidget* wbPropertyEditor::makeEditor(iProperty const& property)
{
    iNodeGroup* object = m_object.get();
    char const* type = property.getTypeName();
    iProperty const* p = &property;
    try {
        if (isOneOf(type, {"int"})) {
            auto* box = new QSpinBox;
            box->setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
            box->setValue(p->get<int>(object));
            connect(box, &QSpinBox::editingFinished, this, [this, p, box] { write<int>(*p, box->value()); });
            onRefresh([this, p, box] {
                QSignalBlocker quiet(box);
                box->setValue(p->get<int>(m_object.get()));
            });
            return box;
        }
        if (isOneOf(type, {"double", "iScaleUnit"})) {
            auto* box = new QDoubleSpinBox;
            box->setDecimals(4);
            box->setRange(-1e9, 1e9);
            box->setValue(p->get<double>(object));
            connect(box, &QDoubleSpinBox::editingFinished, this, [this, p, box] { write<double>(*p, box->value()); });
            onRefresh([this, p, box] {
                QSignalBlocker quiet(box);
                box->setValue(p->get<double>(m_object.get()));
            });
            return box;
        }
        if (isOneOf(type, {"bool", "iBoolSwitch"})) {
            auto* box = new QCheckBox;
            box->setChecked(p->get<bool>(object));
            connect(box, &QCheckBox::toggled, this, [this, p](bool on) { write<bool>(*p, on); });
            onRefresh([this, p, box] {
                QSignalBlocker quiet(box);
                box->setChecked(p->get<bool>(m_object.get()));
            });
            return box;
        }
        if (isOneOf(type, {"std::string", "iStringFileName"})) {
            auto* line = new QLineEdit(QString::fromStdString(p->get<std::string>(object)));
            connect(line, &QLineEdit::editingFinished, this,
                    [this, p, line] { write<std::string>(*p, line->text().toStdString()); });
            onRefresh([this, p, line] {
                QSignalBlocker quiet(line);
                line->setText(QString::fromStdString(p->get<std::string>(m_object.get())));
            });
            return line;
        }
        if (isOneOf(type, {"osg::Vec3", "osg::Vec3f"})) {
            auto* line = new QLineEdit(vectorText(p->get<osg::Vec3f>(object)));
            connect(line, &QLineEdit::editingFinished, this, [this, p, line] {
                osg::Vec3f value;
                if (readVector(line->text(), value))
                    write<osg::Vec3f>(*p, value);
                else if (m_object.valid())
                    line->setText(vectorText(p->get<osg::Vec3f>(m_object.get())));
            });
            onRefresh([this, p, line] {
                QSignalBlocker quiet(line);
                line->setText(vectorText(p->get<osg::Vec3f>(m_object.get())));
            });
            return line;
        }
        if (isOneOf(type, {"iColor4"})) {
            auto* button = new QPushButton;
            button->setStyleSheet(colourStyle(p->get<iColor4>(object)));
            connect(button, &QPushButton::clicked, this, [this, p, button] {
                if (!m_object.valid())
                    return;
                iColor4 const now = p->get<iColor4>(m_object.get());
                QColor const chosen = QColorDialog::getColor(QColor::fromRgbF(now.r(), now.g(), now.b(), now.a()),
                                                             this, tr("Colour"), QColorDialog::ShowAlphaChannel);
                if (!chosen.isValid())
                    return;
                iColor4 const colour(chosen.redF(), chosen.greenF(), chosen.blueF(), chosen.alphaF());
                write<iColor4>(*p, colour);
                button->setStyleSheet(colourStyle(colour));
            });
            onRefresh([this, p, button] { button->setStyleSheet(colourStyle(p->get<iColor4>(m_object.get()))); });
            return button;
        }
    } catch (std::exception const&) {
        // A property whose type name and C++ type differ is shown read-only.
    }
    auto* shown = new QLineEdit;
    shown->setReadOnly(true);
    auto const show = [this, p, shown] {
        try {
            shown->setText(readableValue(*p, m_object.get()));
        } catch (std::exception const&) {
            shown->setText(tr("not editable here"));
        }
    };
    show();
    onRefresh(show);
    return shown;
}
