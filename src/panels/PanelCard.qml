import QtQuick
import QtQuick.Layouts
import Morvo.Panels

// A ground with some things one beneath the other.
Rectangle {
    id: card

    required property PanelLook look
    property real padding: 10
    property alias spacing: column.spacing
    default property alias content: column.data

    implicitHeight: column.implicitHeight + 2 * card.padding
    radius: 9
    color: card.look.tinted(card.look.foam, 0.05)

    ColumnLayout {
        id: column

        anchors {
            left: parent.left
            right: parent.right
            top: parent.top
            margins: card.padding
        }
        spacing: 6
    }
}
