"""The interrupt signal: it ends a run at the console, and not one that a GUI has begun: a GUI may interrupt before it
has read that it shall not."""

import signal

import learn_records
import pytest
from positions import START_TEXT
from talk import Talk


def interruptible() -> None:
    """Whoever runs the tests in the background may have switched the signal off for all that they start."""
    signal.signal(signal.SIGINT, signal.SIG_DFL)


def test_an_interrupt_ends_a_run_at_the_console(learning):
    with Talk(learning, xboard=False, preexec_fn=interruptible) as talk:
        assert talk.ask("getboard") == [f"position {START_TEXT}"]
        talk.process.send_signal(signal.SIGINT)
        assert talk.process.wait(timeout=20) == -signal.SIGINT
    assert not learning.file("tarvyle.lrn").exists()


@pytest.mark.parametrize("times", [1, 20])
def test_a_gui_may_interrupt_and_nothing_happens(learning, book_records, times):
    with Talk(learning, preexec_fn=interruptible) as talk:
        for _ in range(times):
            talk.process.send_signal(signal.SIGINT)
            assert talk.ask("getboard") == [f"position {START_TEXT}"]
        talk.leave()
    assert learn_records.read(learning.file("tarvyle.lrn")) == book_records


def test_a_gui_may_interrupt_a_search(learning):
    """A search of many looks at the clock, each of which takes a moment."""
    slow = learning.environment(step_ms=100) | {"FIXED_TIME_PAUSE_MS": "5"}
    with Talk(learning, preexec_fn=interruptible, env=slow) as talk:
        talk.process.stdin.write("go\n")
        talk.process.stdin.flush()
        assert talk.process.stdout.readline() != ""  # it thinks
        talk.process.send_signal(signal.SIGINT)
        assert talk.ask()[-1].startswith("move ")
