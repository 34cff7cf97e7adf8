"""Status codes of the KPCBAPI library turned into Python exceptions.

Every exported function of the library returns a status code. The binding raises
one of the classes below for each failure code; success codes never reach the
caller as exceptions.
"""

OK = 0
EXIT_NOT_WAITED = -2
NOT_RUNNING = -4
SLOT_UNAVAILABLE = -5
NO_REPLY = -7
ERR_200 = -200
ERR_201 = -201
ERR_202 = -202

# Failure codes that the reference viewer sends in its hello when it cannot start.
VIEWER_BOARD_UNREADABLE = -3
VIEWER_SLOT_TAKEN = -6



def status_text(code):
    """What the library says a status code means (KPCB_GetStatusText)."""
    from ._library import library
    return library().KPCB_GetStatusText(int(code)).decode("utf-8", "replace")


# What the codes mean when a launch returns them.
LAUNCH_MEANINGS = {
    SLOT_UNAVAILABLE: "the return slot is busy: another launch is under way",
    NO_REPLY: "the viewer did not say hello",
    ERR_200: "the board file does not exist",
    ERR_201: "no viewer executable was found beside the library",
    ERR_202: "the viewer process could not be created",
}


class KpcbError(Exception):
    """A KPCBAPI call failed.

    code: the status code the library returned; meaning: what it means for this
    call; function: the name of the library function that returned it.
    """

    def __init__(self, code, meaning=None, function=None):
        self.code = int(code)
        self.meaning = meaning or status_text(self.code)
        self.function = function
        where = function + ": " if function else ""
        code = "" if "(%d)" % self.code in self.meaning else " (%d)" % self.code
        super().__init__(where + self.meaning + code)


class NotRunningError(KpcbError):
    """-4: the addressed viewer process does not run (for exit: or it was not
    launched by this process)."""


class SlotUnavailableError(KpcbError):
    """-5: a mailslot could not be opened or created."""


class NoReplyError(KpcbError):
    """-7: no valid reply (or, for a launch, no hello) was read."""


class ViewerRefusedError(KpcbError):
    """-200, -201 or -202: the viewer (or the library on its behalf) refused the
    request; .meaning says why when the call knows."""


_CLASSES = {
    NOT_RUNNING: NotRunningError,
    SLOT_UNAVAILABLE: SlotUnavailableError,
    NO_REPLY: NoReplyError,
    ERR_200: ViewerRefusedError,
    ERR_201: ViewerRefusedError,
    ERR_202: ViewerRefusedError,
}


def error_for(code, function=None, meanings=None):
    """The exception for a failure code: the class that the code maps to, with
    the meaning from meanings (a dict of code to text) when it has one."""
    code = int(code)
    meaning = (meanings or {}).get(code)
    return _CLASSES.get(code, KpcbError)(code, meaning, function)


def check(code, function=None, meanings=None):
    """Returns code when it is not negative, else raises its exception."""
    if code < 0:
        raise error_for(code, function, meanings)
    return code
