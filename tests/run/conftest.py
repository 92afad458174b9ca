import os
import pty

import pytest

from pair_fixtures import pair, ready  # noqa: F401
from varnoth_run import Pair, arguments, run


@pytest.fixture
def terminal():
    """The two ends of a terminal: the keyboard and what a run reads from."""
    ends = pty.openpty()
    yield ends
    for end in ends:
        os.close(end)


@pytest.fixture(scope="module")
def traced(tmp_path_factory):
    """One run of a made-up pair with everything in the log."""
    directory = Pair().write(tmp_path_factory.mktemp("traced"))
    return run(directory, arguments(lfl="TRACE"))
