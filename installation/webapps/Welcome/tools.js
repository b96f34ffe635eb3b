/** The developer tools of the view, opened and closed by the page. */
import { onPress, start, write } from './gallery.js';

start(['open', 'close'], () => {
  onPress('open', () => {
    xocef.openDevTools();
    write('sent', 'open the developer tools');
  });
  onPress('close', () => {
    xocef.closeDevTools();
    write('sent', 'close the developer tools');
  });
});
