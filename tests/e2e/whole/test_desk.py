"""What the tests themselves look through: a wrong answer here is a wrong answer everywhere."""

import subprocess
import threading
import unittest

from case import Screen, main, wait_for


class Desk(unittest.TestCase):
    def test_window_is_found_while_others_vanish(self):
        with Screen.own(640, 480) as screen:
            def show(name):
                return subprocess.Popen(["xev", "-name", name], env=screen.environment(), stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

            done = threading.Event()

            def come_and_go():
                while not done.is_set():
                    passing = show("passing")
                    done.wait(0.02)
                    passing.kill()
                    passing.wait()

            crowd = [threading.Thread(target=come_and_go) for _ in range(2)]
            lasting = show("lasting")
            try:
                window = wait_for("the lasting window", lambda: screen.find("^lasting$"))
                for passing in crowd:
                    passing.start()
                for look in range(20):
                    self.assertEqual(screen.find("^lasting$"), window, look)
                self.assertEqual(screen.find("^another$"), [])
            finally:
                done.set()
                for passing in crowd:
                    if passing.is_alive():
                        passing.join()
                lasting.kill()
                lasting.wait()


if __name__ == "__main__":
    main()
