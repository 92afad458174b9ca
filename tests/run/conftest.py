import os
import pty

import pytest

from pair_fixtures import pair, ready  # noqa: F401


@pytest.fixture
def terminal():
    """The two ends of a terminal: the keyboard and what a run reads from."""
    ends = pty.openpty()
    yield ends
    for end in ends:
        os.close(end)
