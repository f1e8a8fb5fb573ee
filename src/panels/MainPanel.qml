pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Morvo.Panels

// The panel beside the tray icon: what deserves the eye now, and which agents are connected.
Rectangle {
    id: panel

    required property PetStore store

    readonly property PanelColors colors: PanelColors {}

    function tinted(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity)
    }

    implicitWidth: 340
    implicitHeight: content.implicitHeight + 28
    width: implicitWidth
    height: implicitHeight
    color: panel.colors.abyss
    radius: 12
    border.width: 1
    border.color: panel.tinted(panel.colors.foam, 0.12)

    Accessible.role: Accessible.Pane
    Accessible.name: "MorvoBar"

    ColumnLayout {
        id: content

        anchors {
            left: parent.left
            right: parent.right
            top: parent.top
            margins: 14
        }
        spacing: 10

        Text {
            text: "MorvoBar"
            color: panel.colors.foam
            font.pixelSize: 15
            font.weight: Font.DemiBold
        }

        Rectangle {
            Layout.fillWidth: true
            implicitHeight: now.implicitHeight + 20
            radius: 9
            color: panel.tinted(panel.colors.foam, 0.05)
            border.width: 1
            border.color: panel.tinted(panel.colors.body, 0.35)

            ColumnLayout {
                id: now

                anchors {
                    left: parent.left
                    right: parent.right
                    top: parent.top
                    margins: 10
                }
                spacing: 5

                Text {
                    text: "现在"
                    color: panel.tinted(panel.colors.foam, 0.75)
                    font.pixelSize: 11
                }
                Text {
                    Layout.fillWidth: true
                    text: panel.store.attentionHeadline
                    textFormat: Text.PlainText
                    color: panel.colors.foam
                    font.pixelSize: 13
                    wrapMode: Text.Wrap
                    maximumLineCount: 4
                    elide: Text.ElideRight
                }
                Text {
                    Layout.fillWidth: true
                    text: panel.store.attentionExplain
                    textFormat: Text.PlainText
                    color: panel.tinted(panel.colors.foam, 0.75)
                    font.pixelSize: 11
                    wrapMode: Text.Wrap
                    maximumLineCount: 3
                    elide: Text.ElideRight
                }
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 6

            Repeater {
                model: AgentListModel {
                    store: panel.store
                }

                delegate: RowLayout {
                    id: agent

                    required property string name
                    required property string state
                    required property bool connected

                    Layout.fillWidth: true
                    spacing: 8

                    Accessible.role: Accessible.ListItem
                    Accessible.name: agent.name + " " + agent.state

                    Rectangle {
                        implicitWidth: 6
                        implicitHeight: 6
                        radius: 3
                        color: agent.connected ? panel.colors.body : panel.tinted(panel.colors.foam, 0.3)
                    }
                    Text {
                        Layout.fillWidth: true
                        text: agent.name
                        color: panel.colors.foam
                        font.pixelSize: 12
                    }
                    Text {
                        text: agent.state
                        color: panel.tinted(panel.colors.foam, 0.65)
                        font.pixelSize: 11
                    }
                }
            }
        }
    }
}
