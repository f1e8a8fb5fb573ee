import QtQuick
import QtQuick.Templates as T
import Morvo.Panels

// A line of a menu.
T.MenuItem {
    id: item

    required property PanelLook look
    property bool shown: true

    visible: item.shown
    implicitWidth: ListView.view ? ListView.view.width : 200
    height: item.shown ? implicitHeight : 0
    implicitHeight: item.contentItem.implicitHeight + 14
    leftPadding: 8
    rightPadding: 8
    hoverEnabled: true

    contentItem: PanelLabel {
        look: item.look
        size: 12
        text: item.text
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: 6
        color: item.look.tinted(item.look.theme, item.highlighted ? 0.22 : 0)
    }
}
