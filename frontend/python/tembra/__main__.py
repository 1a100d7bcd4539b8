"""python3 -m tembra devices: lists the device database."""
import argparse
import sys

from . import Radio, devices, radio_name


def main() -> int:
    """Returns the exit status."""
    parser = argparse.ArgumentParser(prog="python3 -m tembra", description="Asks the router's association library.")
    commands = parser.add_subparsers(dest="command", required=True)
    commands.add_parser("devices", help="list the device database: id, type, radio, address, name")
    parser.parse_args()
    try:
        for device in devices():
            name = "".join(character if character.isprintable() else "\N{REPLACEMENT CHARACTER}"
                           for character in device.name)
            address = f"{device.address:#06x}" if device.radio == Radio.ZIGBEE else device.address
            print(f"{device.id:<4} {device.type_name:<22} {radio_name(device.radio):<7} {address:<7} {name}")
        sys.stdout.flush()
    except OSError as error:
        print(f"tembra: {error.strerror}", file=sys.stderr)
        sys.stdout = None  # what could not be written is not written again at the end
        return 1
    return 0


sys.exit(main())
