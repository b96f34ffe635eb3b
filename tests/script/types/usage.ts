// What a page may write, and what an editor must underline. Compiled, never run.

async function right(): Promise<void> {
  if (typeof xocef !== 'object') return;
  xocef.sendString('hello');
  xocef.sendString(['name', 1, { a: true }], { recordable: true, position: { line: 1 } });
  xocef.sendString([], null);
  const listener = ([name, ...values]: ReadonlyArray<string>) => values.map((value) => name + value);
  xocef.addStringListener(listener);
  xocef.removeStringListener(listener);
  xocef.receive(['name']);
  xocef.sendDocumentSize();
  xocef.zoomChanged(-12.5);
  xocef.zoomReset();
  xocef.loadHome();
  xocef.openDevTools();
  xocef.closeDevTools();
  const path: string = xocef.getEnv('PATH');
  const nothing: void = await xocef.saveValue('repository', 'name', { path });
  const place = await xocef.loadValue<{ city: string }>('repository', 'name');
  const city: string = place.city;
  const removed: Promise<void> = xocef.removeValue('repository', city);
  const { sendString } = xocef;
  sendString(nothing);
  await removed;
}

async function wrong(): Promise<void> {
  // @ts-expect-error a value is required
  xocef.sendString();
  // @ts-expect-error options are an object
  xocef.sendString('a', 'b');
  // @ts-expect-error no such option
  xocef.sendString('a', { recorded: true });
  // @ts-expect-error a position has numbers
  xocef.sendString('a', { position: { line: '1' } });
  // @ts-expect-error a listener is a function
  xocef.addStringListener({ handleEvent() {} });
  // @ts-expect-error the strings are frozen
  xocef.addStringListener((strings) => strings.push('more'));
  // @ts-expect-error a step is a number
  xocef.zoomChanged('40');
  // @ts-expect-error a name is required
  xocef.getEnv();
  // @ts-expect-error the value is missing
  await xocef.saveValue('repository', 'name');
  // @ts-expect-error the name is missing
  await xocef.loadValue('repository');
  // @ts-expect-error what was loaded has to be looked at first
  (await xocef.loadValue('repository', 'name')).city;
  // @ts-expect-error functions are not replaced
  xocef.loadHome = () => {};
  // @ts-expect-error the natives are not for pages
  xocef.__sendString([], {}, {});
  // @ts-expect-error the module's own
  xocef._internals;
}

export { right, wrong };
