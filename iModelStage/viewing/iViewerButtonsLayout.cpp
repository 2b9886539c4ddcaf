#include <iModelStage/viewing/iViewerButtonsLayout.h>

#include <iModelStage/viewing/iViewer.h>
#include <iModelStage/viewing/iViewerBaseButton.h>

#include <algorithm>

namespace {

iViewerBaseButton* buttonAt(NodeList const& row, std::size_t index)
{
    return static_cast<iViewerBaseButton*>(row[index].get());
}

} // namespace

void iViewerButtonsLayout::addButton(iViewerBaseButton* button, iViewerButtonPos pos)
{
    if (!button || !validPosition(pos))
        return;
    NodeList& row = m_buttons[pos];
    row.push_back(button);
    button->setPosition(getButtonPlacement(pos, static_cast<int>(row.size()) - 1));
    if (m_viewer && m_viewer->getUICamera())
        m_viewer->getUICamera()->addChild(button);
    button->sigVisibilityChanged.connect(this, &iViewerButtonsLayout::relayout);
}

NodeList const& iViewerButtonsLayout::getButtons(iViewerButtonPos pos) const
{
    static NodeList const none;
    return validPosition(pos) ? m_buttons[pos] : none;
}

osg::Vec2i iViewerButtonsLayout::getButtonPlacement(iViewerButtonPos pos, int index)
{
    if (!validPosition(pos))
        return osg::Vec2i(0, 0);
    NodeList const& row = m_buttons[pos];
    if (row.empty() || index < 0 || static_cast<std::size_t>(index) >= row.size())
        return osg::Vec2i(0, 0);
    int total = m_margin;
    int offset = m_margin;
    int rowHeight = buttonAt(row, 0)->getHeight();
    for (std::size_t i = 0; i < row.size(); ++i) {
        iViewerBaseButton const* button = buttonAt(row, i);
        if (!button->getVisible())
            continue;
        total += button->getWidth() + m_spacing;
        if (i < static_cast<std::size_t>(index)) {
            offset += button->getWidth() + m_spacing;
            rowHeight = std::max(rowHeight, button->getHeight());
        }
    }
    int const w = m_viewer ? m_viewer->width() : 0;
    int const h = m_viewer ? m_viewer->height() : 0;
    int const right = m_spacing - m_margin - total + w + offset;
    int const top = h - m_margin - rowHeight;
    switch (pos) {
    case iButtonsTopLeft:
        return osg::Vec2i(offset, top);
    case iButtonsTopRight:
        return osg::Vec2i(right, top);
    case iButtonsBottomLeft:
        return osg::Vec2i(offset, m_margin);
    case iButtonsBottomRight:
        return osg::Vec2i(right, m_margin);
    }
    return osg::Vec2i(0, 0);
}

void iViewerButtonsLayout::relayoutButtons(iViewerButtonPos pos)
{
    if (!validPosition(pos))
        return;
    NodeList const& row = m_buttons[pos];
    for (std::size_t i = 0; i < row.size(); ++i)
        buttonAt(row, i)->setPosition(getButtonPlacement(pos, static_cast<int>(i)));
}

void iViewerButtonsLayout::relayout()
{
    for (int pos = iButtonsTopLeft; pos <= iButtonsBottomRight; ++pos)
        relayoutButtons(static_cast<iViewerButtonPos>(pos));
}

void iViewerButtonsLayout::setSpacing(int spacing)
{
    m_spacing = spacing;
    relayout();
}

void iViewerButtonsLayout::setMargin(int margin)
{
    m_margin = margin;
    relayout();
}

void iViewerButtonsLayout::setRowVisible(int pos, bool on)
{
    for (osg::ref_ptr<osg::Node> const& node : m_buttons[pos]) {
        auto* button = static_cast<iViewerBaseButton*>(node.get());
        // One relayout for the whole row, not one per button.
        bool const wasBlocked = button->sigVisibilityChanged.block(true);
        button->setVisible(on);
        button->sigVisibilityChanged.block(wasBlocked);
    }
}

void iViewerButtonsLayout::setButtonsVisible(iViewerButtonPos pos, bool on)
{
    if (!validPosition(pos))
        return;
    setRowVisible(pos, on);
    relayout();
}

void iViewerButtonsLayout::setAllButtonsVisible(bool on)
{
    for (int pos = iButtonsTopLeft; pos <= iButtonsBottomRight; ++pos)
        setRowVisible(pos, on);
    relayout();
}
