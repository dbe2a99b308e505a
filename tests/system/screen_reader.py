"""What a screen reader finds in the studio's windows, and can do there. Runs in the desktop's own environment.

usage: screen_reader.py list                  every visible element as a JSON line: role, name, value, box, actions
       screen_reader.py act NAME ACTION       runs the action on the first visible element of the name that has it
       screen_reader.py set NAME VALUE        sets the element's number
       screen_reader.py write NAME TEXT       replaces the text of the field
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
        if child is not None and child.get_state_set().contains(Atspi.StateType.VISIBLE):
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


def box(element):
    """Left, top, width and height on the screen."""
    component = element.get_component_iface()
    place = component and Atspi.Component.get_extents(component, Atspi.CoordType.SCREEN)
    return [place.x, place.y, place.width, place.height] if place else None


def described(element):
    return {"role": element.get_role_name(), "name": element.get_name(), "description": element.get_description(),
            "value": value(element), "box": box(element), "actions": actions(element)}


def find(name, can):
    """The first visible element of the name for which `can` holds."""
    for application in applications():
        for element in elements(application):
            if element.get_name() == name and can(element):
                return element
    sys.exit(f"no {name!r} can do that")


def act(name, action):
    element = find(name, lambda element: action in actions(element))
    Atspi.Action.do_action(element.get_action_iface(), actions(element).index(action))


def set_number(name, number):
    element = find(name, lambda element: element.get_value_iface())
    Atspi.Value.set_current_value(element.get_value_iface(), float(number))


def write(name, text):
    element = find(name, lambda element: element.get_editable_text_iface())
    Atspi.EditableText.set_text_contents(element.get_editable_text_iface(), text)


def show_all():
    for application in applications():
        for element in elements(application):
            print(json.dumps(described(element)))


{"list": show_all, "act": act, "set": set_number, "write": write}[sys.argv[1]](*sys.argv[2:])
