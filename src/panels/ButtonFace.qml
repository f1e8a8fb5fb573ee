import QtQuick
import Morvo.Panels

// What stands on a button, in its middle: a text, a symbol, or both.
Item {
    id: face

    required property PanelLook look
    required property string symbol
    required property real symbolSize
    required property bool symbolLast
    required property real size
    required property string text
    required property color ink

    readonly property real symbolRoom: face.symbol !== "" ? face.symbolSize * face.look.fontScale : 0
    readonly property real gap: face.symbol !== "" && face.text !== "" ? 6 : 0

    implicitWidth: face.symbolRoom + face.gap + (face.text !== "" ? label.implicitWidth : 0)
    implicitHeight: row.implicitHeight

    Row {
        id: row

        anchors.centerIn: parent
        spacing: face.gap
        layoutDirection: face.symbolLast ? Qt.RightToLeft : Qt.LeftToRight

        SymbolItem {
            anchors.verticalCenter: parent.verticalCenter
            visible: face.symbol !== ""
            width: face.symbolRoom
            height: face.symbolRoom
            name: face.symbol
            color: face.ink
        }
        PanelLabel {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            visible: face.text !== ""
            width: Math.min(implicitWidth, Math.max(0, face.width - face.symbolRoom - face.gap))
            elide: Text.ElideRight
            look: face.look
            size: face.size
            text: face.text
            color: face.ink
            font.weight: Font.Medium
            Accessible.ignored: true
        }
    }
}
