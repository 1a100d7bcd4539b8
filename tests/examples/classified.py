#!/usr/bin/env python3
"""classified.py CATALOGUE OUTPUT: what `tembra-assoc classify` says of each device of the simulator's catalogue that it
can classify, as a JSON object of label: [type, name]. The name is without the device's number."""
import json
import pathlib
import subprocess
import sys


def classify(device):
    answer = subprocess.run(["tembra-assoc", "--json", "classify", "-"], input=json.dumps(device), text=True,
                            stdout=subprocess.PIPE, check=True).stdout
    said = json.loads(answer.splitlines()[0])  # the last line is the exit status
    return [said["type"]["name"], said["name"].replace(" #1", "")] if said["classified"] else None


def main(catalogue, output):
    files = [pathlib.Path(catalogue, name) for name in ("zwave.json", "zigbee.json")]
    devices = [device for file in files for device in json.loads(file.read_text())["devices"]]
    answers = {device["label"]: classify(device) for device in devices}
    known = {label: answer for label, answer in answers.items() if answer}
    print(f"{len(known)} of {len(devices)} devices can be classified; not: {sorted(answers.keys() - known.keys())}")
    assert len(known) > 50
    pathlib.Path(output).write_text(json.dumps(known))


main(*sys.argv[1:])
