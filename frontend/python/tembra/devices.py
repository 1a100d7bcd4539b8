"""The devices of the database, the servers of the router, and the names of types."""
import ctypes
import os
from typing import List, Optional

from .events import Device
from .library import C, DeviceRow
from .numbers import Radio


def _device(row: DeviceRow) -> Device:
    return Device(row.id, row.type, row.type_name.decode(errors="replace"), row.name.decode(errors="replace"),
                  Radio(row.radio), row.address, row.values)


def devices() -> List[Device]:
    """The devices of the database. OSError when it cannot be read; its errno is EBADMSG when the database is damaged.

    Needs no kit, but blocks, without limit, while another process writes the database. asyncio uses Frontend.devices().
    """
    room = 0
    while True:  # there may be more of them meanwhile
        rows = (DeviceRow * room)()
        count = C.tembra_read_devices(rows, ctypes.sizeof(DeviceRow), room)
        if count < 0:
            error = ctypes.get_errno()
            raise OSError(error, os.strerror(error))
        if count <= room:
            return [_device(row) for row in rows[:count]]
        room = count


def server_listens(server: int) -> bool:
    """Whether somebody listens where the library sends a server's commands; also where the kernel does not tell.
    @param server a Server"""
    return C.tembra_server_listens(server) != 0


def server_name(number: int) -> Optional[str]:
    """"Z-Wave" for Server.ZWAVE; None for a number that is none."""
    name = C.tembra_server_name(number)
    return name.decode() if name else None


def radio_name(number: int) -> Optional[str]:
    """"Z-Wave" for Radio.ZWAVE, "other" for Radio.OTHER; None for a number that is none."""
    name = C.tembra_radio_name(number)
    return name.decode() if name else None


def type_name(number: int) -> Optional[str]:
    """"BinarySwitch" for 1; None when there is no such type."""
    name = C.tembra_type_name(number)
    return name.decode() if name else None


def type_number(name: str) -> int:
    """1 for "BinarySwitch"; 0 when there is no such type."""
    return C.tembra_type_number(name.encode())
