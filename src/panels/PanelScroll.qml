import QtQuick
import QtQuick.Templates as T
import Morvo.Panels

// The bar that shows where one is in a long list.
T.ScrollBar {
    id: bar

    required property PanelLook look

    implicitWidth: 6
    minimumSize: 0.08
    visible: bar.size < 1
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 4
        radius: 2
        color: bar.look.tinted(bar.look.foam, bar.pressed || bar.hovered ? 0.45 : 0.25)
    }
}
