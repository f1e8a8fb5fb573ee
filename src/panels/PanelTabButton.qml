import QtQuick
import QtQuick.Templates as T
import Morvo.Panels

// Brings up one tab of the panel. Of Qt's own kind, since Qt tells assistive programs what a button
// is by its type alone.
T.TabButton {
    id: button

    required property PanelLook look
    required property string symbol
    required property bool chosen

    readonly property color ground: button.chosen ? button.look.tinted(button.look.theme, 0.22) : button.look.tinted(button.look.foam, 0.06)

    function take(event: KeyEvent) {
        if (!event.isAutoRepeat) {
            button.clicked()
        }
    }

    implicitHeight: 32
    // Which tab is chosen is not the button's to say.
    checkable: false
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Keys.onReturnPressed: event => button.take(event)
    Keys.onEnterPressed: event => button.take(event)
    Keys.onLeftPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
    Keys.onRightPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)

    Accessible.name: button.text
    Accessible.selected: button.chosen
    Accessible.onPressAction: button.clicked()

    background: ButtonGround {
        look: button.look
        button: button
        radius: 8
        color: button.ground
    }
    contentItem: ButtonFace {
        look: button.look
        symbol: button.symbol
        symbolSize: 14
        symbolLast: false
        size: 12
        text: button.text
        ink: button.chosen ? button.look.textOn(button.look.theme, 1, button.ground) : button.look.textOn(button.look.foam, 0.75, button.ground)
    }
}
