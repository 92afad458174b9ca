"""A run in which every system call on a file fails once, in every way that it can. Never a success
mark with a wrong pool, never a lost pool, never a hang or a signal, never a log that lacks lines
without a word on the screen."""

import re

from survive import Stage, marks

ERRORS = {
    "openat": ("EACCES", "EMFILE", "EINTR", "EIO", "ENOSPC"),
    "read": ("EIO", "EINTR"), "pread64": ("EIO", "EINTR"),
    "write": ("EIO", "ENOSPC", "EINTR"), "pwrite64": ("EIO", "ENOSPC", "EINTR"),
    "lseek": ("EIO",), "ftruncate": ("EIO", "EACCES", "EINTR"), "close": ("EIO", "EINTR"),
    "unlink": ("EACCES", "EIO"), "newfstatat": ("EIO", "EACCES"), "fcntl": ("EBADF",),
}
LOADER = 127


def test_every_error(tmp_path):
    stage = Stage(tmp_path)

    def look(directory, name, error, number):
        point = (name, error, number)
        status, _ = stage.traced(directory, "-e", f"inject={name}:error={error}:when={number}")
        states = tuple(stage.state(directory, pool) for pool in stage.UPDATED)
        log = directory / "log.varnoth"
        text = log.read_text(errors="replace") if log.exists() else ""
        screen = (directory / "screen").read_text(errors="replace")
        told = re.search("Can not (create|remove) file", text + screen)
        assert "lost" not in states, (point, status, states)
        assert 0 <= status, (point, status)
        if error == "EINTR" and status != LOADER:
            assert (status, *states) == (0, "new", "new"), point
        found = marks(directory)
        if status == 0:
            # The marks themselves may be what failed; that is told.
            assert found == {"OK": "0"} or told, point
            assert states == ("new", "new") or "ALARM" in text, (point, states)
            assert states[1] == "new", point
            whole = text.count("\n") >= stage.log_lines
            assert whole or re.search("log file is incomplete|tmp logging file", screen), point
        elif status == 1:
            assert found == {"ERROR": "1"} or told, (point, found)
            assert "ALARM" in text + screen, point
        else:
            assert found == {} and status in (255, LOADER), (point, status)
        return f"status {status}", *states

    points = [(name, error, n) for name, errors in ERRORS.items() for error in errors
              for n in range(1, stage.calls[name] + 1)]
    seen = stage.sweep(points, look)
    print(f"\nerror sweep: {len(points)} points, lost 0: {dict(seen)}")
    assert len(points) > 500
