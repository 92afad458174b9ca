"""A run killed at every one of its system calls. No pool is lost and no mark lies."""

from survive import Stage, expect_clean_rerun, marks


def mark_that_must_stand(calls):
    """What the marks must be behind these calls; None between the two marks of the end."""
    stands = {}
    for name, words, result in calls:
        if name == "write" and words.endswith('"1", 1') and result == "1":
            stands = {"ERROR": "1"}
        elif name == "unlink" and "ERROR.varnoth" in words and result == "0":
            stands = None
        elif name == "write" and words.endswith('"0", 1') and result == "1":
            stands = {"OK": "0"}
    return stands


def test_every_call(tmp_path):
    stage = Stage(tmp_path)

    def look(directory, name, number):
        _, calls = stage.traced(directory, "-e", f"inject={name}:signal=KILL:when={number}")
        states = tuple(stage.state(directory, pool) for pool in stage.UPDATED)
        assert "lost" not in states, (name, number, states)
        for pool in ("master.pool", "slave.pool"):
            assert (directory / pool).read_bytes() == stage.before[pool]
        wanted, found = mark_that_must_stand(calls), marks(directory)
        if wanted is None:
            assert found in ({}, {"OK": ""}), (name, number, found)
        elif wanted or "ERROR" not in found:
            assert found == wanted, (name, number, found)
        assert found.get("OK") is None or states == ("new", "new")
        # A pool that was cut has its content beside it, and goes on from there.
        for pool, state in zip(stage.UPDATED, states):
            if state == "kept":
                complete = max(directory.glob("pool_*"), key=lambda p: p.stat().st_size)
                (directory / pool).write_bytes(complete.read_bytes())
        expect_clean_rerun(directory)
        return states

    points = [(name, n) for name, count in stage.calls.items() if name != "execve"
              for n in range(1, count + 1)]
    seen = stage.sweep(points, look)
    print(f"\nkill sweep: {len(points)} points, lost 0; InSAR and log pool: {dict(seen)}")
    assert len(points) > 300
    assert all(any(state in states for states in seen) for state in ("old", "new", "kept"))
