import QtQuick
import QtQuick.Templates as T
import Morvo.Panels

// A tab that is longer than the panel. What has the keyboard is scrolled into sight.
Flickable {
    id: area

    required property PanelLook look
    default property alias content: body.data

    readonly property Item focused: Window.activeFocusItem

    contentWidth: width
    contentHeight: body.childrenRect.height
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    T.ScrollBar.vertical: PanelScroll {
        parent: area.parent
        x: area.x + area.width + 4
        height: area.height
        visible: area.visible && size < 1
        look: area.look
    }
    onFocusedChanged: {
        let holder = area.focused
        while (holder && holder !== body) {
            holder = holder.parent
        }
        if (!holder) {
            return
        }
        const place = area.focused.mapToItem(body, 0, 0)
        const margin = 8
        if (place.y - margin < area.contentY) {
            area.contentY = Math.max(0, place.y - margin)
        } else if (place.y + area.focused.height + margin > area.contentY + area.height) {
            area.contentY = Math.min(Math.max(0, area.contentHeight - area.height), place.y + area.focused.height + margin - area.height)
        }
    }

    Item {
        id: body

        width: area.width
        height: childrenRect.height
    }
}
