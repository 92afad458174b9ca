import os
import pty

import pytest

from varnoth_run import Pair, run


@pytest.fixture
def pair():
    return Pair()


@pytest.fixture
def ready(tmp_path, pair):
    """A fresh directory with a made-up pair."""
    return pair.write(tmp_path)


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
    from varnoth_run import arguments
    directory = Pair().write(tmp_path_factory.mktemp("traced"))
    return run(directory, arguments(lfl="TRACE"))
