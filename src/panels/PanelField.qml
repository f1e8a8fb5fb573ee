import QtQuick
import QtQuick.Templates as T
import Morvo.Panels

// A line to type in.
T.TextField {
    id: field

    required property PanelLook look
    property real size: 13

    padding: 10
    implicitHeight: contentHeight + 2 * field.padding
    font.pixelSize: Math.round(field.size * field.look.fontScale)
    color: field.look.foam
    selectionColor: field.look.theme
    selectedTextColor: field.look.onTheme
    placeholderTextColor: field.look.textOn(field.look.foam, 0.5, field.look.tinted(field.look.foam, 0.1))
    selectByMouse: true
    verticalAlignment: TextInput.AlignVCenter
    clip: true
    opacity: field.enabled ? 1 : 0.45

    Accessible.role: Accessible.EditableText
    Accessible.name: field.placeholderText

    background: Rectangle {
        radius: 10
        color: field.look.tinted(field.look.foam, 0.1)

        FocusRing {
            anchors.margins: 0
            look: field.look
            radius: 10
            shown: field.activeFocus
        }
    }

    PanelLabel {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height
        visible: field.length === 0 && field.preeditText === ""
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        look: field.look
        size: field.size
        text: field.placeholderText
        color: field.placeholderTextColor
        Accessible.ignored: true
    }
}
