#!/usr/bin/env python3
"""The rig of the characters: easing, joints, acts, follow-through, and that a character is drawn alike each time."""

import json
import math
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[3] / "assets" / "characters"
sys.path.insert(0, str(SOURCES))

import rig  # noqa: E402
from cast import CAST  # noqa: E402
from character import ACTS, EXITS, RETURNS, STATES, Character, hand, hands  # noqa: E402
from draw import Sketch  # noqa: E402
from features import MOUTHS, Mouth  # noqa: E402
from rig import Act, Joints, Swing, arc, elbow, inSteps, times  # noqa: E402


class Stick(Character):
    """Nothing but a body, a head and a tail that dangles."""

    name = "Stick"
    joints = Joints({"body": (None, 50.0, 100.0), "head": ("body", 50.0, 60.0), "tail": ("body", 60.0, 90.0)})
    swings = {"tail.turn": Swing({"body.x": 2.0}, 0.5, 0.2)}
    mouth = Mouth(50, 50, 10, 8, "#000000")

    def draw(self, sketch):
        sketch.layer("body")
        sketch.on("body", "<b/>")
        sketch.layer("head")
        sketch.on("head", "<h/>")


class Easing(unittest.TestCase):
    def test_every_ease_goes_from_the_start_to_the_goal(self):
        for ease in (rig.linear, rig.easeIn, rig.easeOut, rig.easeInOut, rig.bounce, arc(), arc(0.2), arc(0, 0.3), arc(0.1, 0.1)):
            self.assertAlmostEqual(ease(0.0), 0.0)
            self.assertAlmostEqual(ease(1.0), 1.0)

    def test_no_ease_jumps(self):
        for ease in (rig.linear, rig.easeIn, rig.easeOut, rig.easeInOut, rig.bounce, arc(0.2, 0.3)):
            for number in range(1000):
                self.assertLess(abs(ease((number + 1) / 1000) - ease(number / 1000)), 0.006)

    def test_anticipation_draws_back_and_overshoot_goes_beyond(self):
        values = [arc(0.2, 0.3)(number / 100) for number in range(101)]
        self.assertAlmostEqual(min(values), -0.2, 2)
        self.assertAlmostEqual(max(values), 1.3, 2)
        self.assertLess(values.index(min(values)), values.index(max(values)))
        self.assertGreaterEqual(min(arc()(number / 100) for number in range(101)), 0.0)
        self.assertLessEqual(max(arc()(number / 100) for number in range(101)), 1.0)


class JointsCarry(unittest.TestCase):
    def setUp(self):
        self.stick = Stick()

    def at(self, joint, x, y, **channels):
        pose = self.stick.pose({name.replace("_", "."): value for name, value in channels.items()})
        return Sketch(self.stick.joints, pose, 144).at(joint, x, y)

    def near(self, found, wanted):
        for a, b in zip(found, wanted):
            self.assertAlmostEqual(a, b, 4)

    def test_at_rest_nothing_is_moved(self):
        self.near(self.at("head", 12.0, 34.0), (12.0, 34.0))

    def test_a_joint_turns_about_its_pivot(self):
        self.near(self.at("tail", 60.0, 90.0, tail_turn=70.0), (60.0, 90.0))
        self.near(self.at("tail", 70.0, 90.0, tail_turn=90.0), (60.0, 100.0))

    def test_what_carries_takes_along_what_it_carries(self):
        self.near(self.at("head", 50.0, 60.0, body_x=7.0), (57.0, 60.0))
        self.near(self.at("tail", 60.0, 90.0, body_turn=90.0), (60.0, 110.0))
        self.near(self.at("body", 60.0, 90.0, tail_turn=90.0), (60.0, 90.0))

    def test_a_squash_keeps_the_volume(self):
        x, y = self.at("body", 60.0, 90.0, body_squash=0.2)
        self.assertAlmostEqual((x - 50.0) * (y - 100.0), -100.0)
        self.assertLess(y, 90.0)

    def test_pivots_of_whole_joints_stand_on_whole_pixels(self):
        x, y = self.at("head", 50.0, 60.0, body_turn=3.3, head_y=0.4)
        self.near((x, y), (round(x), round(y)))

    def test_matrices_are_put_together_from_the_last_to_the_first(self):
        move, grow = (1, 0, 0, 1, 5, 0), (2, 0, 0, 2, 0, 0)
        self.assertEqual(rig.moved(times(move, grow), 1, 1), (7, 2))
        self.assertEqual(rig.moved(times(grow, move), 1, 1), (12, 2))

    def test_an_elbow_lies_as_far_from_both_ends_as_the_bones_are_long(self):
        x, y = elbow(0, 0, 6, 8, 7, 7, 1)
        self.assertAlmostEqual(math.hypot(x, y), 7)
        self.assertAlmostEqual(math.hypot(x - 6, y - 8), 7)

    def test_an_elbow_points_outward(self):
        self.assertLess(elbow(0, 0, 0, 10, 7, 7, -1)[0], 0)
        self.assertGreater(elbow(0, 0, 0, 10, 7, 7, 1)[0], 0)
        self.assertTrue(all(math.isfinite(value) for value in elbow(0, 0, 0, 0, 7, 7, 1) + elbow(0, 0, 90, 0, 7, 7, 1)))


class Acts(unittest.TestCase):
    def setUp(self):
        self.stick = Stick()

    def frames(self, fill):
        act = Act(self.stick, "Test")
        fill(act)
        return act.frames()

    def test_a_move_takes_its_time_and_ends_at_its_goal(self):
        frames = self.frames(lambda act: act.to(0.4, {"head.y": 10.0}, overshoot=0))
        self.assertEqual(sum(frame["duration"] for frame in frames), 40)
        self.assertTrue(all(frame["duration"] <= 8 for frame in frames))
        self.assertEqual(frames[-1]["pose"]["head.y"], 10.0)

    def test_to_starts_from_rest_and_also_from_what_was_before(self):
        act = Act(self.stick, "Test").to(0.1, {"head.y": 10.0}).also(0.1, {"head.x": 5.0})
        self.assertEqual((act.pose["head.y"], act.pose["head.x"]), (10.0, 5.0))
        act.to(0.1, {"head.x": 5.0})
        self.assertEqual(act.pose["head.y"], 0.0)

    def test_a_quick_temper_moves_in_less_time(self):
        self.stick.tempo = 2.0
        frames = self.frames(lambda act: act.to(0.8, {"head.y": 10.0}, overshoot=0))
        self.assertEqual(sum(frame["duration"] for frame in frames), 40)

    def test_a_tail_lags_behind_swings_out_and_comes_to_rest(self):
        frames = self.frames(lambda act: act.to(0.16, {"body.x": 20.0}, overshoot=0).hold(1.0))
        turns = [frame["pose"]["tail.turn"] for frame in frames]
        self.assertLess(min(turns), -5.0)
        self.assertGreater(max(turns), 2.0)
        self.assertEqual(turns[-1], 0.0)
        self.assertEqual(sum(frame["duration"] for frame in frames), 116)

    def test_without_springiness_nothing_swings(self):
        self.stick.springiness = 0.0
        frames = self.frames(lambda act: act.to(0.16, {"body.x": 20.0}).hold(1.0))
        self.assertEqual({frame["pose"]["tail.turn"] for frame in frames}, {0.0})

    def test_an_act_ends_just_in_its_last_pose(self):
        for fill in (lambda act: act.to(0.2, {"body.x": 20.0}).rest(0.2), lambda act: act.to(0.2, {"body.x": 20.0})):
            act = Act(self.stick, "Test")
            fill(act)
            self.assertEqual(act.frames()[-1]["pose"], act.pose)

    def test_a_blink_shuts_the_eyes_and_opens_them_again(self):
        frames = self.frames(lambda act: act.to(0.1, {"head.y": 3.0}).blink())
        opened = [frame["pose"]["eye.open"] for frame in frames]
        self.assertIn(0.0, opened)
        self.assertEqual(opened[-1], 1.0)
        self.assertEqual({frame["pose"]["head.y"] for frame in frames[2:]}, {3.0})

    def test_a_breath_is_the_same_each_time(self):
        frames = self.frames(lambda act: act.breathe(2))
        half = len(frames) // 2
        self.assertEqual([frame["pose"] for frame in frames[:half]], [frame["pose"] for frame in frames[half:]])
        self.assertEqual(max(frame["pose"]["breath"] for frame in frames), 1.0)

    def test_an_interrupted_act_leaves_by_the_pose_most_like_its_own(self):
        frames = self.frames(lambda act: act.to(0.4, {"head.y": 10.0}, overshoot=0).hold(0.5).rest(0.4, overshoot=0))
        leaving = frames[5]["exit"]
        self.assertEqual(frames[-1]["exit"], "end")
        self.assertGreaterEqual(frames[0]["exit"], len(frames) - 2)
        self.assertLess(leaving, len(frames) - 1)
        self.assertAlmostEqual(frames[leaving]["pose"]["head.y"], frames[5]["pose"]["head.y"], delta=2.5)

    def test_a_loop_goes_back_to_its_mark(self):
        def fill(act):
            act.to(0.16, {"body.x": 9.0}).hold(0.5)
            mark = act.mark()
            act.also(0.16, {"head.y": 3.0}, overshoot=0).also(0.16, {"head.y": 0.0}, overshoot=0).again(mark, 60).rest(0.2)
        frames = self.frames(fill)
        [(to, percent)] = [branch for frame in frames for branch in frame["branches"]]
        self.assertEqual(percent, 60)
        self.assertGreater(frames[to]["pose"]["head.y"], 0.5)
        self.assertEqual(frames[to - 1]["pose"]["head.y"], 0.0)

    def test_a_channel_that_there_is_not_is_refused(self):
        with self.assertRaisesRegex(KeyError, "Stick has no channel head.z"):
            Act(self.stick, "Test").to(0.1, {"head.z": 1.0})

    def test_steps_begin_at_rest(self):
        rest = {"head.x": 0.3, "brow.y": 0.0}
        self.assertEqual(inSteps(rest, rest, 1.0), rest)
        self.assertEqual(inSteps({"head.x": 0.9, "brow.y": 0.1}, rest, 1.0), {"head.x": 1.3, "brow.y": 0.0})


class Layers(unittest.TestCase):
    def test_what_is_moved_by_whole_pixels_looks_the_same(self):
        stick = Stick()
        rest, moved = stick.sketch(stick.pose()), stick.sketch(stick.pose({"body.x": 6.0, "head.y": -3.0}))
        self.assertEqual([layer[2] for layer in rest.layers], [layer[2] for layer in moved.layers])
        self.assertEqual([layer[:2] for layer in moved.layers], [[6, 0], [6, -3]])

    def test_what_is_turned_does_not(self):
        stick = Stick()
        self.assertNotEqual(stick.sketch(stick.pose()).layers[1], stick.sketch(stick.pose({"head.turn": 9.0})).layers[1])


class Crowns(unittest.TestCase):
    def test_who_jumps_or_stretches_stays_on_the_canvas(self):
        stick = Stick()
        stick.crowns = (("head", 50.0, 30.0),)
        for channels in ({"body.y": -40.0}, {"body.squash": 0.6}, {"body.y": -40.0, "body.squash": 0.4, "head.y": -9.0}):
            sketch = stick.posed(stick.pose(channels))
            self.assertGreaterEqual(sketch.at("head", 50.0, 30.0)[1], 1.0, channels)
            self.assertLessEqual(sketch["body.y"], 2.0, channels)
        self.assertEqual(stick.posed(stick.pose({"body.y": -9.0}))["body.y"], -9.0)


class Cast(unittest.TestCase):
    def test_every_character_has_every_act_and_its_way_back(self):
        for name, character in CAST.items():
            animations = {animation.name: animation for animation in character().animations()}
            self.assertLessEqual(set(ACTS), set(animations), name)
            for act, (transition, _) in ACTS.items():
                if transition == RETURNS:
                    back = animations[animations[act].returns]
                    self.assertEqual(back.transition, EXITS)
                    self.assertEqual(back.frames[-1]["pose"], character().rest, f"{name}: {back.name}")
            for names in STATES.values():
                self.assertLessEqual(set(names), set(animations))

    def test_every_character_has_ways_of_its_own(self):
        methods = {name[0].lower() + name[1:] for name in ACTS}
        for name, character in CAST.items():
            self.assertTrue(character.description and character.guid and character.voice)
            self.assertNotEqual((character.tempo, character.springiness), (Character.tempo, Character.springiness), name)
            self.assertGreaterEqual(len(methods & set(vars(CAST[name]))), 20, name)

    def test_mouths_are_drawn_in_their_box(self):
        for name, character in CAST.items():
            figure = character()
            x, y, width, height = figure.mouthBox(figure.pose())
            self.assertTrue(0 <= x and 0 <= y and x + width <= figure.size and y + height <= figure.size, name)
            drawn = {figure.drawn(figure.speaking(figure.pose(), shape)) for shape in MOUTHS}
            self.assertEqual(len(drawn), len(MOUTHS), name)

    def test_hands_and_hand_name_the_channels_of_both_sides(self):
        self.assertEqual(hands(1, 2), {**hand("L", 1, 2), **hand("R", 1, 2)})


class Building(unittest.TestCase):
    def test_a_character_is_the_same_wherever_and_whenever_it_is_built(self):
        with tempfile.TemporaryDirectory() as folder:
            built = []
            for place, seed in (("one", "1"), ("another one", "2")):
                sources, work = Path(folder) / place / "characters", Path(folder) / place / "work"
                shutil.copytree(SOURCES, sources, ignore=shutil.ignore_patterns("__pycache__"))
                # Sets and dicts of texts come in another order.
                environment = {**os.environ, "PYTHONHASHSEED": seed}
                script = ("import build_character as b, pathlib, sys, json; c = b.CAST['Ottoline'](); "
                          "all = c.animations; c.animations = lambda: all(names={'RestPose', 'Sad', 'GestureLeft'}); "
                          "c.states = {'HIDING': ['Sad']}; p = pathlib.Path(sys.argv[1]); "
                          "p.mkdir(parents=True); m = b.manifest(c, p, sys.argv[2]); (p / 'o.json').write_text(json.dumps(m))")
                subprocess.run([sys.executable, "-B", "-c", script, str(work), os.environ["MURMELIX_RSVG_CONVERT"]], check=True,
                               cwd=sources, env=environment)
                subprocess.run([os.environ["MURMELIX_ACSBUILD"], str(work / "o.json"), "-o", str(work / "o.acs")], check=True)
                built.append((work / "o.acs").read_bytes())
            self.assertGreater(len(built[0]), 10000)
            self.assertEqual(built[0], built[1])


if __name__ == "__main__":
    unittest.main()
