import QtQuick
import Morvo.Panels

// Shows where the keyboard is.
Rectangle {
    id: ring

    required property PanelLook look
    required property bool shown

    anchors.fill: parent
    anchors.margins: -2
    visible: ring.shown
    color: "transparent"
    border.width: 2
    border.color: ring.look.textOn(ring.look.theme, 1, ring.look.abyss)
}
