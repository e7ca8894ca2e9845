#!/usr/bin/env python3
"""Mutation testing: changes one place of the library at a time and runs the suite.

usage: mutate.py [--count N] [--seed N] [--only PATTERN] WORK_DIRECTORY
       mutate.py --check

The changes are made in a copy of the tree below WORK_DIRECTORY and built there incrementally. Lines
that this host does not compile are left out. A change that does not compile, or that the compiler
turns into the same machine code, counts for nothing and another one takes its place. The choice is
fixed by the seed: each file gets a share by its number of places, and at least two. Survivors that
equivalent.txt explains are counted apart; any other one makes the exit status 1. --check only looks
for explanations of lines that are gone.
"""
import argparse
import collections
import hashlib
import json
import os
import pathlib
import random
import re
import shlex
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
LIBRARY = 'CMakeFiles/kelutil_objects.dir'
# The time of a build is part of one source.
ENVIRONMENT = {**os.environ, 'SOURCE_DATE_EPOCH': '1300000000'}
EQUIVALENT = pathlib.Path(__file__).with_name('equivalent.txt')

# Which test programs know a folder of src/ or a header best: they are built and run first. All
# others follow where these pass.
BITS = 'random_byte_buffer bits_test'
NUMBER = 'random_number numbers_test'
UTIL = 'random_number_util number_util_test'
LOG = 'random_log logging_test logging_process memory_test'
FILES = 'port_test random_normalize_path files_test'
NEAREST = {
    'bits': BITS, 'numbers': f'{NUMBER} {UTIL}', 'text': 'random_tokenizer text_test',
    'logging': LOG, 'files': FILES, 'port': FILES, 'frame': 'frame_test internal_test',
    'common': f'internal_test {BITS} {NUMBER} {UTIL}',
    'Kel_ByteBuffer': BITS, 'Kel_Number': NUMBER, 'Kel_NumberUtil': UTIL,
    'Kel_StrTok': 'random_tokenizer text_test', 'Kel_Util': f'text_test {FILES}',
    'Kel_Exception': 'frame_test', 'Version': 'frame_test', 'Logger': LOG, 'MethodLogger': LOG,
}

# (what, pattern, replacement): one change each. Binary operators stand between blanks, as
# clang-format lays them out, so templates and references are left alone.
CHANGES = [
    ('comparison', r' < ', ' <= '), ('comparison', r' <= ', ' < '),
    ('comparison', r' > ', ' >= '), ('comparison', r' >= ', ' > '),
    ('comparison', r' < ', ' > '),
    ('comparison', r' == ', ' != '), ('comparison', r' != ', ' == '),
    ('logic', r' && ', ' || '), ('logic', r' \|\| ', ' && '),
    ('logic', r'!(?=[\w(])', ''), ('logic', r'\btrue\b', 'false'), ('logic', r'\bfalse\b', 'true'),
    ('bound', r' - 1\b', ''), ('bound', r' \+ 1\b', ''), ('bound', r' \+ 1\b', ' + 2'),
    ('operator', r' \+ ', ' - '), ('operator', r' - ', ' + '),
    ('operator', r' << ', ' >> '), ('operator', r' >> ', ' << '),
    ('operator', r' \| ', ' & '), ('operator', r' % ', ' / '), ('operator', r' \* ', ' + '),
    ('operator', r' \+= ', ' -= '), ('operator', r' -= ', ' += '), ('operator', r' \|= ', ' = '),
    ('operator', r'(?<!\w)\+\+(?=\w)', '--'), ('operator', r'(?<!\w)--(?=\w)', '++'),
    ('mask', r' & [\w.]+(?![\w(\[.:])', ''), ('mask', r' &= ', ' |= '),
    ('constant', r'(?<![\w.])0(?![\w.\'])', '1'),
    ('constant', r'(?<![\w.])([1-9]\d*)(?![\w.\'])', lambda m: str(int(m[1]) + 1)),
    ('constant', r'(?<![\w.])0x([0-9A-F]+)(?![0-9A-F\'])',
     lambda m: '0x%0*X' % (len(m[1]), int(m[1], 16) ^ 1)),
    ('constant', r"'([A-Za-z0-9])'", lambda m: "'%s'" % chr(ord(m[1]) + 1)),
    ('message', r'"([^"\\]+)"', lambda m: '"%s~"' % m[1]),
    ('call', r'^(\s+)[A-Za-z_][\w:.>-]*\(.*\);$', r'\1;'),
    ('statement', r'^(\s+)(?!return|const |auto )[\w\[\].>-]+(?: [-+|&^]?= ).*;$', r'\1;'),
    ('branch', r'^(\s+)if \((.*)\)( \{)?$', r'\1if (false && (\2))\3'),
]
SKIP = re.compile(r'\s*(#|//|\*|assert\(|static_assert|using |namespace |template|'
                  r'(private|public|protected):|KELRT_|extern )')


def sources():
    files = subprocess.run(['git', 'ls-files', 'src', 'include'], cwd=ROOT, check=True,
                           capture_output=True, text=True).stdout.split()
    return [f for f in sorted(files) if f.endswith(('.cpp', '.h'))]


def without_comment(line):
    at = line.find('//')
    return line if at < 0 or line.count('"', 0, at) % 2 else line[:at].rstrip()


def places(file, compiled):
    """All changes of a file: (line number, what, the line as it is, the line as changed)."""
    lines = (ROOT / file).read_text().split('\n')
    found = []
    for number, line in enumerate(lines):
        code = without_comment(line)
        if number + 1 not in compiled or SKIP.match(line) or not code.strip():
            continue
        for what, pattern, new in CHANGES:
            for match in re.finditer(pattern, code):
                inside_text = code.count('"', 0, match.start()) % 2
                if inside_text and what != 'message':
                    continue
                found.append((number, what, line,
                              code[:match.start()] + match.expand(new) + code[match.end():]
                              if isinstance(new, str) else
                              code[:match.start()] + new(match) + code[match.end():]))
    return found


class Scratch:
    """The copy of the tree, and its build."""

    def __init__(self, work):
        self.tree, self.build = work / 'tree', work / 'build'
        shutil.rmtree(self.tree, ignore_errors=True)
        names = subprocess.run(['git', 'ls-files', '--cached', '--others', '--exclude-standard'],
                               cwd=ROOT, check=True, capture_output=True, text=True).stdout
        for name in names.split('\n'):
            if name and (ROOT / name).is_file():
                (self.tree / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(ROOT / name, self.tree / name)
        shutil.rmtree(self.build, ignore_errors=True)
        self.run(['cmake', '-S', self.tree, '-B', self.build, '-G', 'Ninja', '-Wno-dev',
                  '-DCMAKE_BUILD_TYPE=Mutation', '-DCMAKE_CXX_FLAGS=-O1 -w', '-DCMAKE_CXX_COMPILER=g++',
                  '-DCMAKE_LINK_DEPENDS_NO_SHARED=ON', '-DKELUTIL_BUILD_EXAMPLES=ON'], 120)
        self.make(limit=3600)
        self.plain_library, self.plain = self.code(LIBRARY), self.code('.')

    def run(self, command, limit):
        """The exit status and the output; a program that takes too long has failed."""
        try:
            done = subprocess.run([str(c) for c in command], capture_output=True, text=True,
                                  errors='replace', timeout=limit, check=False, env=ENVIRONMENT)
            return done.returncode, done.stdout + done.stderr
        except subprocess.TimeoutExpired:
            return 1, 'took too long'

    def make(self, targets='all', limit=300):
        status, said = self.run(['cmake', '--build', self.build, '-j2', '--target',
                                 *targets.split()], limit)
        self.said = said
        return status == 0

    def compiled_lines(self):
        """{file: the lines that the library's sources compile}: other hosts compile the others."""
        lines = collections.defaultdict(set)
        for entry in json.loads((self.build / 'compile_commands.json').read_text()):
            if LIBRARY not in entry['command']:
                continue
            command = shlex.split(entry['command'].replace(' -c ', ' -E '))
            at = command.index('-o')
            status, said = self.run(command[:at] + command[at + 2:], 60)
            assert status == 0, said
            file, number = '', 0
            for line in said.split('\n'):
                mark = re.match(r'# (\d+) "(.*?)"', line)
                if mark:
                    number, file = int(mark[1]), os.path.relpath(mark[2], self.tree)
                elif line.strip():
                    lines[file].add(number)
                number += not mark
        return lines

    def code(self, folder):
        """What the compiler has made of the sources below a folder of the build."""
        objects = sorted((self.build / folder).glob('**/*.o'))
        return {o: hashlib.sha256(o.read_bytes()).digest() for o in objects}

    def failing(self, *choice):
        """The name of a test of the choice that fails, or None."""
        status, said = self.run(['ctest', '--test-dir', self.build, '-j2', '--stop-on-failure',
                                 '--timeout', '10', *choice], 240)
        if status == 0:
            return None
        failed = re.search(r'tests FAILED:\s+\d+ - (\S+)', said)
        return failed[1] if failed else said.strip().split('\n')[-1]

    def outcome(self, file):
        """'no change', 'refused', the test that notices, or None."""
        inside = file.startswith('src/')
        if not self.make('KelUtil'):
            return 'refused'
        if inside and self.code(LIBRARY) == self.plain_library:
            return 'no change'
        nearest = NEAREST[file.split('/')[1] if inside else pathlib.Path(file).stem]
        if not self.make(nearest):
            return 'refused'
        labels = '^(' + nearest.replace(' ', '|') + ')$'
        noticed = self.failing('-L', labels)
        if noticed is not None:
            return noticed
        if not self.make():
            return 'refused'
        if self.code('.') == self.plain:
            return 'no change'
        return self.failing('-LE', labels)

    def change(self, file, place):
        """The outcome with that place changed."""
        number, _, before, after = place
        path = self.tree / file
        original = path.read_text()
        lines = original.split('\n')
        assert lines[number] == before
        lines[number] = after
        path.write_text('\n'.join(lines))
        try:
            return self.outcome(file)
        finally:
            path.write_text(original)


def explained():
    """(file, line, changed line) of the survivors that equivalent.txt explains."""
    entries, entry = set(), []
    for line in EQUIVALENT.read_text().split('\n') if EQUIVALENT.exists() else []:
        if line.startswith('#') or not line.strip():
            entry = []
            continue
        entry.append(' '.join(line[1:].split()) if line[0] in '-+' else line.strip())
        if len(entry) == 3:
            entries.add(tuple(entry))
    return entries


def check():
    """The exit status: 1 when equivalent.txt explains a change of a line that is not there."""
    gone = []
    for file, before, after in sorted(explained()):
        path = ROOT / file
        lines = path.read_text().split('\n') if path.exists() else []
        if before not in (' '.join(without_comment(line).split()) for line in lines) and \
                before not in (' '.join(line.split()) for line in lines):
            gone.append(f'{file}\n- {before}\n+ {after}')
    for entry in gone:
        print(f'equivalent.txt explains a line that is gone: {entry}')
    return 1 if gone else 0


def chosen(lines, count, seed):
    """The changes of each file, shuffled, and how many of them are to be judged."""
    generator = random.Random(seed)
    queues = {}
    for file in sources():
        found = places(file, lines[file])
        generator.shuffle(found)
        if found:
            queues[file] = found
    total = sum(map(len, queues.values()))
    shares = {f: max(2, round(count * len(q) / total)) for f, q in queues.items()}
    return queues, shares


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('work', type=pathlib.Path, nargs='?')
    parser.add_argument('--check', action='store_true')
    parser.add_argument('--count', type=int, default=180)
    parser.add_argument('--seed', type=int, default=7)
    parser.add_argument('--only', default='', metavar='PATTERN',
                        help='only the files in whose path the pattern is found')
    arguments = parser.parse_args()
    if arguments.check:
        sys.exit(check())
    scratch = Scratch(arguments.work.resolve())
    queues, shares = chosen(scratch.compiled_lines(), arguments.count, arguments.seed)
    queues = {f: q for f, q in queues.items() if re.search(arguments.only, f)}
    status, said = scratch.run(['ctest', '--test-dir', scratch.build, '-j2', '--timeout', '60'], 600)
    if status != 0:
        sys.exit('the suite fails without any change:\n' + scratch.said[-2000:] + said[-3000:])
    known, caught, equivalent, survivors = explained(), 0, 0, []
    for file, queue in queues.items():
        left = shares[file]
        for place in queue:
            if left == 0:
                break
            start = time.monotonic()
            outcome = scratch.change(file, place)
            if outcome in ('refused', 'no change'):
                continue
            left -= 1
            number, what, before, after = place
            key = (file, ' '.join(before.split()), ' '.join(after.split()))
            if outcome is not None:
                caught += 1
                note = 'caught by ' + outcome
            elif key in known:
                equivalent += 1
                note = 'equivalent, as explained'
            else:
                survivors.append(key)
                note = 'SURVIVED'
            print(f'{file}:{number + 1}: {what}: {note} ({time.monotonic() - start:.0f} s)')
            if outcome is None:
                print(f'  - {key[1]}\n  + {key[2]}')
            sys.stdout.flush()
    scratch.make()
    counted = caught + len(survivors)
    print(f'mutate: seed {arguments.seed}, {counted + equivalent} changes: {caught} caught, '
          f'{equivalent} equivalent, {len(survivors)} survived; '
          f'{100 * caught / max(1, counted):.1f} % of those that matter are caught')
    for file, before, after in survivors:
        print(f'{file}\n- {before}\n+ {after}')
    sys.exit(1 if survivors else 0)


if __name__ == '__main__':
    main()
