// Lines of logs with what they mean and what to do.
const NO_ALARM = ['no ALARM line in the log', null,
  ['The run was killed, or a numerical kernel ended it and wrote its reason to standard error.',
    'Look for pool_XXXXXX beside the pools, then run again.']];

// [text, line, remedy] of the cause of a failure.
function causeOf(pair) {
  const alarm = firstAlarm(pair);
  if (alarm) return [alarm[1], alarm[2], DATA.remedies[alarm[3]] ?? null];
  if (!pair.log.fault) return NO_ALARM;
  return [`the log can't be read: ${pair.log.fault}`, null, ['Why the pair failed is not known.', 'Make the log readable, then write this page again.']];
}

function remedyText(remedy) {
  if (!remedy) return [element('p', {class: 'quiet'}, 'The page on messages does not have this line.')];
  return [remedy[0] ? element('p', {}, remedy[0]) : null, element('p', {class: 'remedy'}, remedy[1])];
}

// Each kind of line once, with the number of its repetitions.
function noticeList(pair) {
  const kinds = new Map();
  for (const [level, text, line, remedy] of pair.notices) {
    const kind = kinds.get(level + text) ?? {level, text, line, remedy, count: 0};
    kind.count += 1;
    kinds.set(level + text, kind);
  }
  return element('ul', {class: 'notices'}, [...kinds.values()].map((kind) => element('li', {class: kind.level},
    element('p', {}, element('b', {}, kind.level), ' ', element('code', {}, kind.text),
      element('small', {}, ` line ${kind.line}${kind.count > 1 ? `, ${kind.count} times` : ''}`)),
    remedyText(DATA.remedies[kind.remedy]))));
}
