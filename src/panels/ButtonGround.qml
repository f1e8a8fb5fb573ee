import QtQuick
import QtQuick.Templates as T
import Morvo.Panels

// What lies under a button: its ground, what hand and pointer do to it, and where the keyboard is.
Rectangle {
    id: ground

    required property PanelLook look
    required property T.AbstractButton button

    Rectangle {
        anchors.fill: parent
        radius: ground.radius
        color: ground.look.foam
        opacity: ground.button.down ? 0.12 : (ground.button.hovered && ground.button.enabled ? 0.06 : 0)
    }
    FocusRing {
        look: ground.look
        radius: ground.radius + 2
        shown: ground.button.visualFocus
    }
}
