"""The library's own messages, handed to Python's logging.

The compiled core queues what the library reports (warnings of the kriging
engine, and lines it would print) while a call runs, on whatever thread;
``flush`` passes them to the logger ``varimo`` once the call is back.
"""

import logging

from . import _core

logger = logging.getLogger("varimo")

_LEVELS = {
    "Info": logging.INFO,
    "Warning": logging.WARNING,
    "Error": logging.ERROR,
    "Fatal": logging.CRITICAL,
    "Out": logging.INFO,
    "Err": logging.WARNING,
}


def flush():
    """Logs the queued messages; returns their texts, in order."""
    texts = []
    for level, text in _core.drain_messages():
        text = text.rstrip("\n")
        logger.log(_LEVELS.get(level, logging.WARNING), "%s", text)
        texts.append(text)
    return texts


def call(function, *args, **kwargs):
    """Calls into the core, then logs what it reported; returns the result
    and the texts reported."""
    try:
        result = function(*args, **kwargs)
    finally:
        reported = flush()
    return result, reported
