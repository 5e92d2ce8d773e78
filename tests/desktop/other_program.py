#!/usr/bin/python3
"""A program with one window that copies what it is told to: one JSON message a line on its input, one answer a line."""

import base64
import json
import os
import select
import sys

from Xlib import X, Xatom, display
from Xlib.protocol import event

INCREMENTAL_FROM = 200_000
CHUNK = 60_000


class Program:
    def __init__(self, name):
        self.display = display.Display()
        self.root = self.display.screen().root
        self.window = self.root.create_window(
            *(200, 200, 320, 120, 0, X.CopyFromParent),
            background_pixel=self.display.screen().white_pixel,
            event_mask=X.PropertyChangeMask | X.StructureNotifyMask,
        )
        self.window.set_wm_name(name)
        self.window.set_wm_class(name.lower(), name)
        self.window.change_property(self.atom("_NET_WM_PID"), Xatom.CARDINAL, 32, [os.getpid()])
        self.window.change_property(self.atom("_NET_WM_NAME"), self.atom("UTF8_STRING"), 8, name.encode())
        self.flavours, self.hang, self.requested, self.transfers = {}, "no", [], {}
        self.window.map()
        self.wait_for_map()

    def atom(self, name):
        return self.display.intern_atom(name)

    def wait_for_map(self):
        while self.display.next_event().type != X.MapNotify:
            pass

    def now(self):
        """The server's time, which taking a selection needs."""
        self.window.change_property(self.atom("NOTES_TIME"), Xatom.INTEGER, 32, [0])
        while True:
            seen = self.display.next_event()
            if seen.type == X.PropertyNotify and seen.atom == self.atom("NOTES_TIME"):
                return seen.time
            self.handle(seen)

    # What it is told to do

    def do(self, message):
        return getattr(self, "do_" + message["do"])(message)

    def do_activate(self, _):
        message = event.ClientMessage(
            window=self.window, client_type=self.atom("_NET_ACTIVE_WINDOW"), data=(32, [2, self.now(), 0, 0, 0])
        )
        self.root.send_event(message, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.display.sync()
        return True

    def do_copy(self, message):
        self.flavours = {self.atom(name): self.bytes_of(value) for name, value in message["flavours"].items()}
        self.hang, self.requested = message["hang"], []
        self.window.set_selection_owner(self.atom("CLIPBOARD"), self.now())
        self.display.sync()
        return self.do_owns(message)

    def do_owns(self, _):
        owner = self.display.get_selection_owner(self.atom("CLIPBOARD"))
        return bool(owner) and owner.id == self.window.id

    def do_requests(self, _):
        return self.requested

    @staticmethod
    def bytes_of(value):
        if isinstance(value, str):
            return value.encode()
        return base64.b64decode(value["base64"]) if "base64" in value else b"x" * value["size"]

    # What the window server tells it

    def handle(self, seen):
        if seen.type == X.SelectionRequest:
            self.requested.append(self.display.get_atom_name(seen.target))
            self.answer(seen)
        elif seen.type == X.PropertyNotify and seen.state == X.PropertyDelete:
            self.send_next(seen.window, seen.atom)

    def answer(self, request):
        target, place = request.target, request.property or request.target
        if self.hang == "all" or (self.hang == "data" and target in self.flavours):
            return
        if target == self.atom("TARGETS"):
            atoms = [self.atom("TARGETS"), *self.flavours]
            request.requestor.change_property(place, Xatom.ATOM, 32, atoms)
        elif target in self.flavours:
            data = self.flavours[target]
            if len(data) < INCREMENTAL_FROM:
                request.requestor.change_property(place, target, 8, data)
            else:
                request.requestor.change_attributes(event_mask=X.PropertyChangeMask)
                self.transfers[(request.requestor.id, place)] = (request.requestor, target, memoryview(data))
                request.requestor.change_property(place, self.atom("INCR"), 32, [len(data)])
        else:
            place = X.NONE
        answer = event.SelectionNotify(
            time=request.time,
            requestor=request.requestor,
            selection=request.selection,
            target=target,
            property=place,
        )
        request.requestor.send_event(answer)

    def send_next(self, window, place):
        transfer = self.transfers.get((window.id, place))
        if not transfer:
            return
        requestor, target, left = transfer
        requestor.change_property(place, target, 8, bytes(left[:CHUNK]))
        if left:
            self.transfers[(window.id, place)] = (requestor, target, left[CHUNK:])
        else:
            del self.transfers[(window.id, place)]


def main():
    program = Program(sys.argv[1])
    print("true", flush=True)
    program.display.set_error_handler(lambda *_: None)
    while True:
        # Sending may read events as well: the last look before waiting has to be for them.
        program.display.flush()
        while program.display.pending_events():
            program.handle(program.display.next_event())
            program.display.flush()
        ready, _, _ = select.select([sys.stdin, program.display.fileno()], [], [])
        if sys.stdin in ready:
            line = sys.stdin.readline()
            if not line:
                return
            print(json.dumps(program.do(json.loads(line))), flush=True)


if __name__ == "__main__":
    main()
