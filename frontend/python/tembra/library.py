"""The C face, as ctypes sees it."""
import ctypes

HISTORY_SIZE = 65536
_NAME_SIZE = 361
_TYPE_NAME_SIZE = 73


class Options(ctypes.Structure):
    """struct tembra_options"""
    _fields_ = [("size", ctypes.c_size_t), ("role", ctypes.c_int), ("keep_open", ctypes.c_int),
                ("program", ctypes.c_char_p), ("watch_path", ctypes.c_char_p)]


class DeviceRow(ctypes.Structure):
    """struct tembra_device"""
    _fields_ = [("id", ctypes.c_int), ("type", ctypes.c_int), ("radio", ctypes.c_int), ("address", ctypes.c_uint),
                ("values", ctypes.c_int), ("name", ctypes.c_char * _NAME_SIZE),
                ("type_name", ctypes.c_char * _TYPE_NAME_SIZE)]


class HolderStructure(ctypes.Structure):
    """struct tembra_holder"""
    _fields_ = [("size", ctypes.c_size_t), ("role", ctypes.c_int), ("pid", ctypes.c_int), ("since", ctypes.c_longlong),
                ("program", ctypes.c_char * 64), ("operation", ctypes.c_char * 24), ("phase", ctypes.c_char * 24)]


_KIT, _EVENT, _TEXT, _INT, _SIZE = (ctypes.c_void_p, ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int, ctypes.c_size_t)
_WATCH = ctypes.c_void_p

_FUNCTIONS = {
    "tembra_frontend_new": (_KIT, [ctypes.POINTER(Options)]),
    "tembra_frontend_free": (None, [_KIT]),
    "tembra_frontend_add": (_INT, [_KIT]),
    "tembra_frontend_add_again": (_INT, [_KIT]),
    "tembra_frontend_remove": (_INT, [_KIT]),
    "tembra_frontend_take_out": (_INT, [_KIT]),
    "tembra_frontend_reset": (_INT, [_KIT, _INT]),
    "tembra_frontend_hue_discover": (_INT, [_KIT]),
    "tembra_frontend_hue_add_bridge": (_INT, [_KIT, _TEXT, ctypes.c_int]),
    "tembra_frontend_hue_add_bulb": (_INT, [_KIT, _TEXT, _TEXT]),
    "tembra_frontend_hue_refresh": (_INT, [_KIT, _TEXT, _TEXT]),
    "tembra_frontend_hue_remove": (_INT, [_KIT, _TEXT]),
    "tembra_frontend_hue_list": (_INT, [_KIT]),
    "tembra_frontend_nest_status": (_INT, [_KIT]),
    "tembra_frontend_nest_link": (_INT, [_KIT, _TEXT]),
    "tembra_frontend_nest_unlink": (_INT, [_KIT]),
    "tembra_frontend_devices": (_INT, [_KIT]),
    "tembra_frontend_finish": (_INT, [_KIT, _INT, _TEXT, _TEXT]),
    "tembra_frontend_cancel": (_INT, [_KIT]),
    "tembra_frontend_descriptor": (_INT, [_KIT]),
    "tembra_frontend_next": (_EVENT, [_KIT, _INT]),
    "tembra_frontend_state_json": (_SIZE, [_KIT, _TEXT, _SIZE]),
    "tembra_frontend_history": (_SIZE, [_TEXT, _SIZE]),
    "tembra_frontend_log": (None, [_INT, _TEXT]),
    "tembra_event_free": (None, [_EVENT]),
    "tembra_event_json": (_TEXT, [_EVENT]),
    "tembra_operation_name": (_TEXT, [_INT]),
    "tembra_event_kind_name": (_TEXT, [_INT]),
    "tembra_phase_name": (_TEXT, [_INT]),
    "tembra_outcome_name": (_TEXT, [_INT]),
    "tembra_reason_name": (_TEXT, [_INT]),
    "tembra_refusal_text": (_TEXT, [_INT]),
    "tembra_radio_name": (_TEXT, [_INT]),
    "tembra_server_listens": (_INT, [_INT]),
    "tembra_server_name": (_TEXT, [_INT]),
    "tembra_type_name": (_TEXT, [_INT]),
    "tembra_type_number": (_INT, [_TEXT]),
    "tembra_read_holder": (_INT, [_TEXT, _INT, ctypes.POINTER(HolderStructure)]),
    "tembra_watch_open": (_WATCH, [_TEXT]),
    "tembra_watch_descriptor": (_INT, [_WATCH]),
    "tembra_watch_next": (_TEXT, [_WATCH, _INT]),
    "tembra_watch_cancel": (_INT, [_WATCH]),
    "tembra_watch_history": (_INT, [_WATCH]),
    "tembra_watch_close": (None, [_WATCH]),
    "tembra_read_devices": (ctypes.c_long, [ctypes.POINTER(DeviceRow), _SIZE, _SIZE]),
}


def _load():
    library = ctypes.CDLL("libtembra-frontend.so.1", use_errno=True)
    for name, (result, arguments) in _FUNCTIONS.items():
        function = getattr(library, name)
        function.restype, function.argtypes = result, arguments
    return library


C = _load()
