"""What a screen reader finds in the studio's windows, and can do there. Runs in the desktop's own environment.

usage: screen_reader.py list                  every named element as JSON lines: role, name, value, actions
       screen_reader.py act NAME ACTION       runs the action on the first element of the name
       screen_reader.py set NAME VALUE        sets the element's number
"""

import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402


def applications():
    desktop = Atspi.get_desktop(0)
    return [desktop.get_child_at_index(n) for n in range(desktop.get_child_count())]


def elements(root):
    yield root
    for n in range(root.get_child_count()):
        child = root.get_child_at_index(n)
        if child is not None:
            yield from elements(child)


def actions(element):
    action = element.get_action_iface()
    return [Atspi.Action.get_action_name(action, n) for n in range(Atspi.Action.get_n_actions(action))] if action else []


def value(element):
    number = element.get_value_iface()
    text = element.get_text_iface()
    if text:
        return Atspi.Text.get_text(text, 0, -1)
    return Atspi.Value.get_current_value(number) if number else None


def described(element):
    return {"role": element.get_role_name(), "name": element.get_name(), "description": element.get_description(),
            "value": value(element), "actions": actions(element)}


def find(name):
    for application in applications():
        for element in elements(application):
            if element.get_name() == name:
                return element
    sys.exit(f"nothing is called {name!r}")


def main():
    command, *arguments = sys.argv[1:]
    if command == "list":
        for application in applications():
            for element in elements(application):
                print(json.dumps(described(element)))
    elif command == "act":
        element = find(arguments[0])
        Atspi.Action.do_action(element.get_action_iface(), actions(element).index(arguments[1]))
    elif command == "set":
        Atspi.Value.set_current_value(find(arguments[0]).get_value_iface(), float(arguments[1]))


main()
