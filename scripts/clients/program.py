"""An engine as a child process: lines to it, lines from it."""

import queue
import subprocess
import threading
import time


class Failure(Exception):
    """What a client has to complain of."""


class Skipped(Exception):
    """Something that a check needs is not installed."""


class Program:
    def __init__(self, command, directory):
        self.process = subprocess.Popen(
            command, cwd=directory, text=True, bufsize=1, errors="replace",
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.lines = queue.Queue()
        threading.Thread(target=self.listen, daemon=True).start()

    def listen(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip("\n"))
        self.lines.put(None)

    def send(self, line):
        try:
            self.process.stdin.write(line + "\n")
        except BrokenPipeError:
            raise Failure("the engine has gone") from None

    def line(self, seconds):
        """The next line, or None when none comes in time."""
        try:
            line = self.lines.get(timeout=max(seconds, 0.001))
        except queue.Empty:
            return None
        if line is None:
            raise Failure("the engine has gone")
        return line

    def end(self):
        try:
            self.process.stdin.write("quit\n")
            self.process.wait(3)
        except (BrokenPipeError, subprocess.TimeoutExpired):
            self.process.kill()
            self.process.wait()


class Client:
    """What is common to the clients of both protocols: reading with a deadline, every line judged."""

    def __init__(self, command, directory):
        self.program = Program(command, directory)

    def __enter__(self):
        return self

    def __exit__(self, *ignored):
        self.program.end()

    def send(self, line):
        self.program.send(line)

    def understand(self, line):
        """Takes a line apart, (kind, what it says), or raises a Failure."""
        raise NotImplementedError

    def skip_greeting(self, first_word):
        """Drops what the program says of itself before it has heard of a protocol."""
        while (line := self.program.line(5)) is not None:
            if line.startswith(first_word):
                return self.understand(line)
        raise Failure(f"no {first_word} within 5 s")

    def next(self, seconds):
        """The next line as (kind, what it says), or None when none comes in time."""
        line = self.program.line(seconds)
        return None if line is None else self.understand(line)

    def read_until(self, kind, seconds=10):
        """What the next line of this kind says; the lines that came before it are in self.before."""
        end, self.before = time.monotonic() + seconds, []
        while found := self.next(end - time.monotonic()):
            if found[0] == kind:
                return found[1]
            self.before.append(found)
        raise Failure(f"no {kind} within {seconds} s")

    def listen(self, seconds):
        """All that comes in a span of time."""
        end, heard = time.monotonic() + seconds, []
        while found := self.next(end - time.monotonic()):
            heard.append(found)
        return heard
