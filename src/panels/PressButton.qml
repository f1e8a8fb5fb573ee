import QtQuick
import QtQuick.Templates as T

// What every button of the panel does, however it looks: Return and Enter press it as Space does.
T.AbstractButton {
    id: button

    // Where another judges the keys, Return and Enter press nothing.
    property bool takesReturn: true

    // A press by an assistive program, which reaches what no pointer can press.
    function press() {
        if (button.enabled) {
            button.clicked()
        }
    }
    function strike(event: KeyEvent) {
        event.accepted = button.takesReturn
        if (button.takesReturn && !event.isAutoRepeat) {
            button.clicked()
        }
    }

    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Keys.onReturnPressed: event => button.strike(event)
    Keys.onEnterPressed: event => button.strike(event)

    Accessible.onPressAction: button.press()
}
