"""The numbers of the kit. They never change. In JSON each stands as its name in small letters, with hyphens."""
import enum


class Operation(enum.IntEnum):
    """What runs."""
    NONE = 0
    ADD = 1
    REMOVE = 2
    RESET = 3
    HUE_DISCOVER = 4
    HUE_ADD_BRIDGE = 5
    HUE_ADD_BULB = 6
    HUE_REFRESH = 7
    HUE_REMOVE = 8
    HUE_LIST = 9
    NEST_STATUS = 10
    NEST_LINK = 11
    NEST_UNLINK = 12
    DEVICES = 13


class Server(enum.IntEnum):
    """The router's daemons."""
    ZIGBEE = 1
    ZWAVE = 2
    HUE = 3
    NEST = 4
    HA = 5
    MESH = 6  # nothing is ever sent to it


class Role(enum.IntEnum):
    """What kind of front end a program is."""
    NONE = 0  # for Frontend: the touch screen; of a holder: not known
    WEB_SERVER = 1
    TOUCH_SCREEN = 2
    CLOUD_AGENT = 3
    MESH_SERVER = 4
    FREE_1 = 5
    FREE_2 = 6


class Phase(enum.IntEnum):
    """What an operation is doing."""
    NONE = 0
    OPENING = 1  # the connection is being opened
    BUTTON = 2  # somebody has to press a device's button
    IDENTITY = 3  # a device answered and says which one it is
    DESCRIPTION = 4  # the device describes itself
    CHOICE = 5  # the user chooses type, name and place
    STORING = 6  # the HA server stores the device
    LEAVING = 7  # the radio confirms that the device left
    ANSWER = 8  # a Hue or Nest server answers
    LINK_BUTTON = 9  # somebody has to press the bridge's button
    RESETTING = 10  # the radios start anew
    DATABASE = 11  # the device database is read
    CLOSING = 12  # the last call of the library is not over yet
    LEAVE_BUTTON = 13  # somebody has to press the button of a known device, which is to leave
    EMPTYING = 14  # the HA server empties the device list


class Outcome(enum.IntEnum):
    """How an operation ended."""
    DONE = 1
    CANCELLED = 2
    TIMED_OUT = 3
    FAILED = 4


class Reason(enum.IntEnum):
    """Why an operation ended, or what is missing; docs/reasons.md has the sentences."""
    NONE = 0
    CANCELLED = 1
    CANCELLED_JOINED = 2
    CANCELLED_LATE = 3
    IN_USE = 10
    NO_SOCKET = 11
    NO_THREAD = 12
    NO_RADIO_SERVER = 13
    ONE_RADIO_SERVER = 14
    NO_SERVER = 15
    NOT_SENT = 16
    CONNECTION_LOST = 17
    NO_ANSWER = 18
    OTHER_ANSWER = 19
    NOT_WATCHED = 20
    NO_MEMORY = 21
    NOBODY_PRESSED = 30
    DEVICE_SILENT = 31
    RADIO_FAILED = 32
    UNKNOWN_KIND = 33
    ALREADY_KNOWN = 34
    NOT_IN_LIST = 35
    CHOICE_TOO_SLOW = 36
    NOT_STORED = 37
    OTHER_LEFT = 38
    DEVICES_REMAIN = 39
    LEFT = 40
    DATABASE_DAMAGED = 50
    DATABASE_UNREADABLE = 51
    LINK_BUTTON = 60
    NO_BRIDGE = 61
    UNKNOWN_BRIDGE = 62
    HUE_FAILED = 63
    NEST_REFUSED = 64


class Radio(enum.IntEnum):
    """Over what a device is reached."""
    OTHER = 0
    ZIGBEE = 1
    ZWAVE = 2
    IP = 3


class Reset(enum.IntEnum):
    """What Frontend.reset resets."""
    ZIGBEE = 1
    ZWAVE = 2
    BOTH = 3
    BOTH_AND_DEVICE_LIST = 4
