"""What the commands of matches take, read for argparse, which tells what is wrong with it."""

import argparse

from uci_match import TimeControl


def setting(text: str) -> tuple[str, str]:
    """NAME=VALUE as a pair."""
    name, equals, value = text.partition("=")
    if not name or not equals:
        raise argparse.ArgumentTypeError(f"{text} is not NAME=VALUE")
    return name, value


def time_control(text: str) -> TimeControl:
    """[MOVES/]SECONDS[+INCREMENT]."""
    try:
        return TimeControl.parse(text)
    except ValueError as error:
        raise argparse.ArgumentTypeError(str(error)) from None


def between(low: float, high: float):
    """A number between these two, both left out."""

    def number(text: str) -> float:
        try:
            value = float(text)
        except ValueError:
            value = low
        if not low < value < high:
            raise argparse.ArgumentTypeError(f"{text} is not a number between {low:g} and {high:g}")
        return value

    return number


def whole(low: int, high: int):
    """A whole number from one to the other."""

    def number(text: str) -> int:
        if not text.isdecimal() or not low <= int(text) <= high:
            raise argparse.ArgumentTypeError(f"{text} is not a whole number from {low} to {high}")
        return int(text)

    return number


positive = whole(1, 10**9)
