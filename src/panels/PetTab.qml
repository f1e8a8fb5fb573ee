pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Morvo.Panels

// How the pet is, who it is, and whether it guards what agents change.
ColumnLayout {
    id: tab

    required property PetStore store
    required property PanelLook look
    required property PanelEntries entries
    required property bool animated

    spacing: 10

    VitalsSection {
        id: vitals

        store: tab.store
        look: tab.look
    }
    ActSection {
        id: act

        store: tab.store
        look: tab.look
    }

    PanelCard {
        Layout.fillWidth: true
        look: tab.look
        spacing: 8

        RowLayout {
            Layout.fillWidth: true
            spacing: 6

            PanelLabel {
                look: tab.look
                size: 12
                text: vitals.title
                font.weight: Font.DemiBold
            }
            PanelLabel {
                Layout.fillWidth: true
                look: tab.look
                size: 10
                text: vitals.note
                color: tab.look.text(tab.look.foam, 0.4)
            }
        }
        RowLayout {
            Layout.fillWidth: true
            spacing: 4

            Repeater {
                model: vitals.rows

                delegate: Item {
                    id: vital

                    required property string emoji
                    required property string label
                    required property string value
                    required property color valueColor
                    required property string help

                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    implicitHeight: column.implicitHeight

                    Accessible.role: Accessible.StaticText
                    Accessible.name: vital.label + " " + vital.value
                    Accessible.description: vital.help

                    Column {
                        id: column

                        anchors.horizontalCenter: parent.horizontalCenter
                        spacing: 3

                        PanelLabel {
                            anchors.horizontalCenter: parent.horizontalCenter
                            look: tab.look
                            size: 14
                            text: vital.emoji
                            // Emoji are not all of one height.
                            height: 20 * tab.look.fontScale
                            verticalAlignment: Text.AlignVCenter
                            font.family: "Noto Color Emoji"
                            Accessible.ignored: true
                        }
                        PanelLabel {
                            anchors.horizontalCenter: parent.horizontalCenter
                            look: tab.look
                            size: 11
                            text: vital.value
                            color: vital.valueColor
                            font.weight: Font.Medium
                            Accessible.ignored: true
                        }
                        PanelLabel {
                            anchors.horizontalCenter: parent.horizontalCenter
                            look: tab.look
                            size: 9
                            text: vital.label
                            color: tab.look.text(tab.look.foam, 0.5)
                            Accessible.ignored: true
                        }
                    }
                    HoverHandler {
                        id: hover
                    }
                    PanelTip {
                        look: tab.look
                        shown: hover.hovered
                        text: vital.help
                    }
                }
            }
        }
        PanelLabel {
            Layout.fillWidth: true
            look: tab.look
            size: 11
            text: vitals.hint
            color: tab.look.text(tab.look.foam, 0.5)
            wrapMode: Text.Wrap
        }
    }
    PersonaBar {
        Layout.fillWidth: true
        store: tab.store
        look: tab.look
        entries: tab.entries
    }
    PanelButton {
        Layout.fillWidth: true
        look: tab.look
        text: act.showPetLabel
        ground: "transparent"
        edge: tab.look.tinted(tab.look.foam, 0.22)
        onClicked: act.showDesktopPet()
    }
    PanelLabel {
        Layout.fillWidth: true
        Layout.topMargin: -4
        look: tab.look
        size: 10
        text: act.petHint
        color: tab.look.textOn(tab.look.foam, 0.45, tab.look.abyss)
        wrapMode: Text.Wrap
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: actRow.implicitHeight + 20
        radius: 8
        color: tab.look.tinted(tab.look.theme, 0.1)

        RowLayout {
            id: actRow

            anchors {
                left: parent.left
                right: parent.right
                verticalCenter: parent.verticalCenter
                margins: 10
            }
            spacing: 8

            SymbolItem {
                implicitWidth: 18
                implicitHeight: 18
                name: "shield.lefthalf.filled"
                color: tab.look.theme
            }
            PanelLabel {
                Layout.fillWidth: true
                look: tab.look
                size: 12
                text: act.label
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
            PanelSwitch {
                look: tab.look
                text: act.label
                on: act.on
                animated: tab.animated
                onFlipped: on => act.setOn(on)
            }
        }
    }
}
