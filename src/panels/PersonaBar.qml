pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Morvo.Panels

// Who the pet is: a menu of personas, and the user's own to manage.
PanelCard {
    id: bar

    required property PetStore store
    required property PanelEntries entries

    property bool managing: false
    property string renamingId: ""

    spacing: 8

    PersonasSection {
        id: personas

        store: bar.store
        look: bar.look
        entries: bar.entries
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 8

        SymbolItem {
            implicitWidth: 16
            implicitHeight: 16
            name: "theatermasks"
            color: bar.look.text(bar.look.foam, 0.8)
        }
        PanelLabel {
            look: bar.look
            size: 12
            text: personas.title
            font.weight: Font.DemiBold
        }
        Item {
            Layout.fillWidth: true
        }
        PanelButton {
            id: opener

            Layout.maximumWidth: 200
            look: bar.look
            text: personas.current
            symbol: "chevron.down"
            symbolSize: 10
            symbolLast: true
            onClicked: menu.visible ? menu.close() : menu.popup(opener, opener.width - menu.width, opener.height + 4)

            Accessible.name: personas.openerName
        }
    }

    T.Menu {
        id: menu

        margins: 10
        padding: 4
        overlap: 0
        implicitWidth: Math.max(200, contentItem ? contentItem.implicitWidth + 8 : 0)
        implicitHeight: contentItem ? contentItem.implicitHeight + 8 : 0

        background: Rectangle {
            radius: 10
            color: bar.look.abyss
            border.width: 1
            border.color: bar.look.tinted(bar.look.foam, 0.2)
        }
        contentItem: ListView {
            implicitWidth: 230
            implicitHeight: Math.min(contentHeight, 260)
            model: menu.contentModel
            currentIndex: menu.currentIndex
            clip: true
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
        }

        Repeater {
            model: personas.choices

            delegate: PanelMenuItem {
                required property string persona
                required property string label

                look: bar.look
                text: label
                onTriggered: personas.choose(persona)
            }
        }
        PanelMenuItem {
            look: bar.look
            text: personas.newPetLabel
            shown: bar.entries.newPet
            onTriggered: personas.createNew()
        }
        PanelMenuItem {
            look: bar.look
            text: personas.manageLabel
            shown: personas.hasCustoms
            onTriggered: bar.managing = !bar.managing
        }
    }

    Repeater {
        model: bar.managing ? personas.customs : null

        delegate: ColumnLayout {
            id: custom

            required property string persona
            required property string name
            required property bool isCurrent
            required property string missingBadge
            required property string missingLine

            readonly property bool renaming: bar.renamingId === custom.persona

            function commitRename() {
                personas.rename(custom.persona, nameField.text)
                bar.renamingId = ""
            }

            Layout.fillWidth: true
            spacing: 4

            RowLayout {
                Layout.fillWidth: true
                spacing: 6

                PersonaAvatarItem {
                    // The glow takes no room of its own.
                    Layout.margins: -7
                    implicitWidth: 45
                    implicitHeight: 42
                    store: bar.store
                    persona: custom.persona
                    look: bar.look
                }
                PanelLabel {
                    Layout.fillWidth: true
                    visible: !custom.renaming
                    look: bar.look
                    size: 12
                    text: custom.name
                    elide: Text.ElideRight
                }
                PanelField {
                    id: nameField

                    Layout.fillWidth: true
                    visible: custom.renaming
                    padding: 6
                    look: bar.look
                    size: 12
                    placeholderText: personas.namePlaceholder
                    onAccepted: custom.commitRename()
                }
                PanelButton {
                    visible: custom.renaming
                    look: bar.look
                    text: personas.saveLabel
                    onClicked: custom.commitRename()
                }
                PanelLabel {
                    visible: custom.isCurrent
                    look: bar.look
                    size: 9
                    text: personas.currentBadge
                    color: bar.look.text(bar.look.theme, 1)
                }
                PanelButton {
                    visible: !custom.isCurrent
                    look: bar.look
                    size: 9
                    leftPadding: 6
                    rightPadding: 6
                    implicitHeight: 24
                    text: personas.chooseLabel
                    onClicked: personas.choose(custom.persona)
                }
                PanelLabel {
                    visible: text !== ""
                    look: bar.look
                    size: 9
                    text: custom.missingBadge
                    color: personas.warningColor
                }
                PanelButton {
                    implicitWidth: 26
                    implicitHeight: 26
                    leftPadding: 0
                    rightPadding: 0
                    look: bar.look
                    symbol: "pencil"
                    symbolSize: 13
                    ground: "transparent"
                    help: personas.renameHelp
                    onClicked: {
                        nameField.text = custom.name
                        bar.renamingId = custom.persona
                        nameField.forceActiveFocus()
                        nameField.selectAll()
                    }
                }
                PanelButton {
                    implicitWidth: 26
                    implicitHeight: 26
                    leftPadding: 0
                    rightPadding: 0
                    look: bar.look
                    symbol: "trash"
                    symbolSize: 13
                    ground: "transparent"
                    ink: bar.look.text(bar.look.coral, 1)
                    help: personas.removeHelp
                    onClicked: personas.remove(custom.persona)
                }
            }
            RowLayout {
                Layout.fillWidth: true
                visible: custom.missingLine !== "" && !custom.renaming
                spacing: 6

                PanelLabel {
                    Layout.fillWidth: true
                    look: bar.look
                    size: 10
                    text: custom.missingLine
                    color: bar.look.text(bar.look.foam, 0.6)
                    wrapMode: Text.Wrap
                }
                PanelButton {
                    look: bar.look
                    size: 10
                    text: personas.fillLabel
                    help: personas.fillHelp
                    enabled: !personas.filling
                    onClicked: personas.fillMissing(custom.persona)
                }
            }
        }
    }
}
