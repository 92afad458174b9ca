"""Hits a run with a signal at a place in its code instead of at a moment, so that the findings do not
depend on how busy the machine is. The program must be linked to fixed addresses."""

import ctypes
import os
import subprocess
import threading
from collections import Counter
from signal import SIGKILL, SIGTRAP

ptrace = ctypes.CDLL(None).ptrace
ptrace.argtypes = [ctypes.c_long, ctypes.c_long, ctypes.c_void_p, ctypes.c_void_p]
ptrace.restype = ctypes.c_long
TRACE_ME, READ_REGISTER, WRITE_REGISTER, CONTINUE, STEP, SET_OPTIONS = 0, 3, 6, 7, 9, 0x4200
NEXT_INSTRUCTION, STACK_TOP = 8 * 16, 8 * 19
DIES_WITH_ITS_TRACER = 0x100000
BREAKPOINT = b"\xcc"
PASSES = 1000


class TracedRun:
    """A run under ptrace, and its breakpoints. It belongs to the thread that made it."""

    def __init__(self, command, directory, breakpoints):
        process = subprocess.Popen(command, cwd=directory, env={**os.environ, "TMPDIR": "tmp"},
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   preexec_fn=lambda: ptrace(TRACE_ME, 0, None, None))
        self.process, self.pid, self.saved = process, process.pid, {}
        # What hangs ends by a signal that no test sends.
        self.patience = threading.Timer(60, os.kill, (self.pid, SIGKILL))
        self.patience.start()
        os.waitpid(self.pid, 0)
        ptrace(SET_OPTIONS, self.pid, None, DIES_WITH_ITS_TRACER)
        self.memory = os.open(f"/proc/{self.pid}/mem", os.O_RDWR)
        self.insert(*breakpoints)

    def insert(self, *addresses):
        for address in set(addresses) - set(self.saved):
            self.saved[address] = os.pread(self.memory, 1, address)
            os.pwrite(self.memory, BREAKPOINT, address)

    def remove(self, address):
        os.pwrite(self.memory, self.saved.pop(address), address)

    def register(self, which):
        return ptrace(READ_REGISTER, self.pid, which, None)

    def advance(self, how, number=0):
        """Goes on, with a signal or without, up to the signal that stops the run; None at its end."""
        ptrace(how, self.pid, None, number)
        _, status = os.waitpid(self.pid, 0)
        if os.WIFSTOPPED(status):
            return os.WSTOPSIG(status)
        self.process.returncode = os.waitstatus_to_exitcode(status)
        self.patience.cancel()
        os.close(self.memory)
        return None

    def go_on(self, number=0):
        """The same up to the next breakpoint, before its instruction. Delivers the signals that come on the
        way."""
        address = self.register(NEXT_INSTRUCTION)
        if number == 0 and address in self.saved:  # with a signal the handler comes first
            self.remove(address)
            if not self.advance(STEP):
                return None
            self.insert(address)
        while number := self.advance(CONTINUE, number):
            address = self.register(NEXT_INSTRUCTION) - len(BREAKPOINT)
            if number == SIGTRAP and address in self.saved:
                ptrace(WRITE_REGISTER, self.pid, NEXT_INSTRUCTION, address)
                return address
        return None


def count_passes(command, directory, addresses):
    """How often a run passes each address, up to PASSES."""
    passes = Counter()
    run = TracedRun(command, directory, addresses)
    while address := run.go_on():
        passes[address] += 1
        if passes[address] == PASSES:
            run.remove(address)
    return passes


def hit(command, directory, place, signals, handler, ending, unsafe):
    """Stops a run where it passes an address for the n-th time, goes some instructions further, sends one
    or two signals, and returns the run's exit status: negative for a signal, and "unsafe" if the handler,
    or what it ends by, passes one of the unsafe addresses."""
    address, occurrence, steps = place
    run = TracedRun(command, directory, [address])
    for _ in range(occurrence):
        assert run.go_on(), "the place is not met"
    run.remove(address)
    for _ in range(steps):
        if not run.advance(STEP):
            return run.process.returncode
    run.insert(handler, ending, *unsafe)
    for number in signals[1:]:
        os.kill(run.pid, number)
    back, is_inside = None, False
    at = run.go_on(signals[0])
    while at:
        if at == handler and back is None:
            back = int.from_bytes(os.pread(run.memory, 8, run.register(STACK_TOP)), "little")
            run.insert(back)
        if is_inside and at in unsafe and at != back:
            return "unsafe"
        is_inside = at != back and (is_inside or at in (handler, ending))
        at = run.go_on()
    return run.process.returncode
