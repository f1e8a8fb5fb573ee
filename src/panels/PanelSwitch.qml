import QtQuick
import Morvo.Panels

// A switch. Shows what it is told; `flipped` tells what the user wants.
PressButton {
    id: toggle

    required property PanelLook look
    required property bool on
    property bool animated: false

    signal flipped(bool on)

    implicitWidth: 36
    implicitHeight: 22
    checkable: true
    checked: toggle.on
    onClicked: {
        toggle.flipped(!toggle.on)
        // A click turns it by itself, whatever comes of that.
        toggle.checked = Qt.binding(() => toggle.on)
    }

    Accessible.name: toggle.text
    Accessible.onToggleAction: toggle.press()

    background: Rectangle {
        radius: height / 2
        color: toggle.on ? toggle.look.theme : toggle.look.tinted(toggle.look.foam, toggle.look.dark ? 0.16 : 0.3)
        border.width: toggle.on ? 0 : 1
        border.color: toggle.look.tinted(toggle.look.foam, toggle.look.dark ? 0.3 : 0.45)

        FocusRing {
            look: toggle.look
            radius: height / 2
            shown: toggle.visualFocus
        }
    }
    contentItem: Item {
        Rectangle {
            readonly property real gap: 3

            y: gap
            x: toggle.on ? parent.width - width - gap : gap
            width: height
            height: parent.height - 2 * gap
            radius: height / 2
            color: toggle.on || !toggle.look.dark ? toggle.look.abyss : toggle.look.tinted(toggle.look.foam, 0.75)

            Behavior on x {
                enabled: toggle.animated
                NumberAnimation {
                    duration: 120
                    easing.type: Easing.OutCubic
                }
            }
        }
    }
}
