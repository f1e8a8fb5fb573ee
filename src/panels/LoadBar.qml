import QtQuick
import QtQuick.Layouts
import Morvo.Panels

// How full one window of an agent is.
RowLayout {
    id: row

    required property PanelLook look
    required property string title
    required property real share
    required property string percent
    required property color percentColor
    required property string tokens
    required property color fill

    spacing: 8

    Accessible.role: Accessible.ProgressBar
    Accessible.name: row.title
    Accessible.description: row.percent + " " + row.tokens

    PanelLabel {
        Layout.preferredWidth: 48 * Math.max(1, row.look.fontScale)
        look: row.look
        size: 11
        text: row.title
        color: row.look.text(row.look.foam, 0.75)
    }
    Rectangle {
        id: track

        Layout.fillWidth: true
        Layout.minimumWidth: 24
        implicitHeight: 6
        radius: 3
        color: row.look.tinted(row.look.foam, 0.1)
        visible: row.share >= 0

        Rectangle {
            width: row.share > 0 ? Math.max(parent.height, parent.width * row.share) : 0
            height: parent.height
            radius: 3
            color: row.fill
        }
    }
    PanelLabel {
        // Of one width while there is a bar, so that the bars beneath each other end together.
        Layout.preferredWidth: row.share < 0 ? implicitWidth : Math.max(implicitWidth, 46 * row.look.fontScale)
        horizontalAlignment: row.share < 0 ? Text.AlignLeft : Text.AlignRight
        look: row.look
        size: 11
        text: row.percent
        color: row.percentColor
    }
    Item {
        Layout.fillWidth: true
        visible: row.share < 0
    }
    PanelLabel {
        Layout.minimumWidth: implicitWidth
        Layout.preferredWidth: Math.max(implicitWidth, 68 * row.look.fontScale)
        horizontalAlignment: Text.AlignRight
        look: row.look
        size: 11
        text: row.tokens
        color: row.look.text(row.look.foam, 0.7)
    }
}
