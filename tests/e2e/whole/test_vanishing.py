"""A neighbour that is gone from one moment to the next: the program goes on, and can be left."""

from case import WholeProgramTest, main

ANN = "ann@messenger.example"
LOG = "".join(f"[09:{minute:02d}] <Ann> message number {minute}\n" for minute in range(30))


class Vanishing(WholeProgramTest):
    def setUp(self):
        super().setUp()
        self.desk.set_up_all()

    def read_some(self, messages):
        self.start_reading(self.conversation(LOG), participants=1, speed=30)
        self.eventually(f"{messages} messages", lambda: len(self.said(ANN)) >= messages)

    def assert_alive(self):
        self.assert_running("Murmelix.exe")
        return self.assert_responsive()

    def kill(self, name):
        process = self.desk.programs[name]
        process.kill()
        process.wait()

    def test_messenger_is_killed_before_reading(self):
        self.open_program(self.conversation(LOG), participants=1)
        self.kill("MessengerClient.exe")
        self.screen.activate(self.reading.window)
        self.screen.key("alt+s")
        self.assert_alive()

    def test_messenger_is_killed_while_reading(self):
        self.read_some(3)
        self.kill("MessengerClient.exe")
        said = len(self.said(ANN))
        self.assert_alive()
        self.assertLessEqual(len(self.said(ANN)), said + 1)

    def test_messenger_vanishes_in_the_middle_of_a_call_of_history(self):
        self.read_some(2)
        self.client("vanish History")
        self.eventually("the client's end", lambda: not self.desk.running("MessengerClient.exe"))
        self.assert_alive()

    def test_messenger_hangs_in_a_call_and_comes_back(self):
        self.read_some(2)
        self.client("hang 3000 History")
        said = len(self.said(ANN))
        self.eventually("more messages", lambda: len(self.said(ANN)) > said + 1)
        self.reading.follow()

    def test_messenger_rejects_calls_for_a_while(self):
        self.read_some(2)
        self.client("fail 80010001 20 History")
        self.reading.follow()

    def test_agent_is_killed_while_reading(self):
        self.read_some(3)
        self.kill("AgentServer.exe")
        self.assert_alive()

    def test_agent_is_killed_before_reading(self):
        self.open_program(self.conversation(LOG), participants=1)
        self.kill("AgentServer.exe")
        self.screen.activate(self.reading.window)
        self.screen.key("alt+s")
        self.assert_alive()

    def test_both_are_killed_at_once(self):
        self.read_some(3)
        self.kill("AgentServer.exe")
        self.kill("MessengerClient.exe")
        self.assert_alive()


if __name__ == "__main__":
    main()
